#include "platform/linux/windows/sway/sway_ipc_reader.h"

#include <cstring>

namespace marzipel {

namespace {

constexpr std::string_view kMagic = "i3-ipc";
constexpr std::size_t kHeaderSize = kMagic.size() + 2 * sizeof(std::uint32_t);

std::uint32_t readWord(const char* at) {
    std::uint32_t value = 0;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void appendWord(std::string& out, std::uint32_t value) {
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    out.append(bytes, sizeof value);
}

}  // namespace

std::string encodeSwayMessage(SwayMessageType type, std::string_view payload) {
    std::string message(kMagic);
    appendWord(message, static_cast<std::uint32_t>(payload.size()));
    appendWord(message, static_cast<std::uint32_t>(type));
    message.append(payload);
    return message;
}

bool SwayIpcReader::feed(std::string_view bytes) {
    if (broken()) return false;
    pending_.append(bytes);
    cut();
    return !broken();
}

std::optional<SwayMessage> SwayIpcReader::next() {
    if (messages_.empty()) return std::nullopt;
    SwayMessage message = std::move(messages_.front());
    messages_.pop_front();
    return message;
}

void SwayIpcReader::cut() {
    std::size_t start = 0;
    while (pending_.size() - start >= kHeaderSize) {
        const char* header = pending_.data() + start;
        if (std::string_view(header, kMagic.size()) != kMagic) {
            error_ = "a message does not start with \"i3-ipc\"";
            break;
        }
        const std::uint32_t length = readWord(header + kMagic.size());
        if (length > maxPayload_) {
            error_ = "a message of " + std::to_string(length) + " bytes is over the limit of " +
                     std::to_string(maxPayload_);
            break;
        }
        if (pending_.size() - start - kHeaderSize < length) break;
        messages_.push_back({readWord(header + kMagic.size() + sizeof(std::uint32_t)),
                             pending_.substr(start + kHeaderSize, length)});
        start += kHeaderSize + length;
    }
    if (broken())
        pending_.clear();
    else
        pending_.erase(0, start);
}

}  // namespace marzipel

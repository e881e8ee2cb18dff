// Arbitrary bytes from Sway's IPC socket, whole and in three reads cut where the first two bytes
// say: both give the same messages, none over the limit, windows only with a process. The bytes
// are read as JSON by themselves too, to reach bad JSON without the framing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "platform/linux/windows/sway/sway_ipc_reader.h"
#include "platform/linux/windows/sway/sway_tree.h"

namespace {

using namespace marzipel;

constexpr std::size_t kLimit = 4096;

void checkWindow(const WindowIdentity& window) {
    if (window.processId <= 0) std::abort();
}

void readAsJson(std::string_view payload) {
    if (const auto tree = parseSwayTree(payload)) {
        for (const WindowIdentity& window : tree->windows) checkWindow(window);
        if (tree->focused) checkWindow(tree->focused->identity);
    }
    if (const auto event = parseSwayWindowEvent(payload); event && event->container)
        checkWindow(event->container->identity);
    (void)parseSwayWorkspaceChange(payload);
    (void)parseSwaySuccess(payload);
}

std::vector<SwayMessage> drain(SwayIpcReader& reader) {
    std::vector<SwayMessage> messages;
    while (auto message = reader.next()) messages.push_back(std::move(*message));
    return messages;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::string_view input(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::size_t first = input.size() * data[0] / 255;
    const std::size_t second = first + (input.size() - first) * data[1] / 255;

    SwayIpcReader whole(kLimit);
    whole.feed(input);
    SwayIpcReader pieces(kLimit);
    std::vector<SwayMessage> fromPieces;
    for (const auto& [from, to] : {std::pair{std::size_t{0}, first}, std::pair{first, second},
                                   std::pair{second, input.size()}}) {
        pieces.feed(input.substr(from, to - from));
        for (SwayMessage& message : drain(pieces)) fromPieces.push_back(std::move(message));
    }
    const std::vector<SwayMessage> fromWhole = drain(whole);
    if (fromWhole != fromPieces || whole.broken() != pieces.broken()) std::abort();
    for (const SwayMessage& message : fromWhole) {
        if (message.payload.size() > kLimit) std::abort();
        readAsJson(message.payload);
    }
    readAsJson(input);
    return 0;
}

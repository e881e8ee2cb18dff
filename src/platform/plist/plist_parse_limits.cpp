#include "platform/plist/plist_parse_limits.h"

#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

namespace marzipel {
namespace {

/// Reads a big-endian unsigned number of `width` bytes (1 to 8) at `offset`.
bool readNumber(std::span<const std::uint8_t> bytes, std::uint64_t offset, std::uint64_t width,
                std::uint64_t& value) {
    if (width == 0 || width > 8 || offset > bytes.size() || bytes.size() - offset < width) {
        return false;
    }
    value = 0;
    for (std::uint64_t i = 0; i < width; ++i) value = (value << 8) | bytes[offset + i];
    return true;
}

/// Walks the object graph of a binary property list as libplist would expand it.
class BinaryWalk {
  public:
    explicit BinaryWalk(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool isWithinLimits() {
        constexpr std::uint64_t trailerSize = 32;
        if (bytes_.size() < 8 + trailerSize) return false;
        const std::uint64_t trailer = bytes_.size() - trailerSize;
        offsetWidth_ = bytes_[trailer + 6];
        refWidth_ = bytes_[trailer + 7];
        std::uint64_t root = 0;
        if (!readNumber(bytes_, trailer + 8, 8, objectCount_) ||
            !readNumber(bytes_, trailer + 16, 8, root) ||
            !readNumber(bytes_, trailer + 24, 8, offsetTable_)) {
            return false;
        }
        if (offsetWidth_ == 0 || offsetWidth_ > 8 || refWidth_ == 0 || refWidth_ > 8) return false;
        if (offsetTable_ > trailer || objectCount_ > (trailer - offsetTable_) / offsetWidth_) {
            return false;
        }
        if (root >= objectCount_) return false;

        std::vector<std::pair<std::uint64_t, std::size_t>> pending{{root, 1}};
        std::size_t values = 1;
        while (!pending.empty()) {
            auto [object, depth] = pending.back();
            pending.pop_back();
            std::uint64_t first = 0;
            std::uint64_t count = 0;
            if (!children(object, first, count)) return false;
            if (count == 0) continue;
            if (depth + 1 > maxPropertyListDepth) return false;
            if (count > maxPropertyListValues - values) return false;
            values += count;
            for (std::uint64_t i = 0; i < count; ++i) {
                std::uint64_t child = 0;
                if (!readNumber(bytes_, first + i * refWidth_, refWidth_, child)) return false;
                if (child >= objectCount_) return false;
                pending.emplace_back(child, depth + 1);
            }
        }
        return true;
    }

  private:
    /// Where the references of a container start and how many there are; none for scalars.
    bool children(std::uint64_t object, std::uint64_t& first, std::uint64_t& count) const {
        std::uint64_t offset = 0;
        if (!readNumber(bytes_, offsetTable_ + object * offsetWidth_, offsetWidth_, offset) ||
            offset >= bytes_.size()) {
            return false;
        }
        const std::uint8_t marker = bytes_[offset];
        const std::uint8_t kind = marker >> 4;
        count = 0;
        // Arrays (0xA), sets (0xC) and dictionaries (0xD, keys then values) hold references.
        if (kind != 0xA && kind != 0xC && kind != 0xD) return true;
        first = offset + 1;
        count = marker & 0x0F;
        if (count == 0x0F) {
            if (first >= bytes_.size() || (bytes_[first] >> 4) != 0x1) return false;
            const std::uint64_t width = std::uint64_t{1} << (bytes_[first] & 0x0F);
            if (!readNumber(bytes_, first + 1, width, count)) return false;
            first += 1 + width;
        }
        if (kind == 0xD) {
            if (count > maxPropertyListValues) return false;
            count *= 2;
        }
        return count <= (bytes_.size() - first) / refWidth_;
    }

    std::span<const std::uint8_t> bytes_;
    std::uint64_t offsetWidth_ = 0;
    std::uint64_t refWidth_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t offsetTable_ = 0;
};

/// Follows the XML lexically: comments, CDATA, declarations and quoted attribute values are
/// skipped so that a closing tag hidden in them cannot hide real nesting.
bool xmlIsWithinLimits(std::string_view text) {
    auto skipPast = [&](std::size_t from, std::string_view end) {
        std::size_t at = text.find(end, from);
        return at == std::string_view::npos ? text.size() : at + end.size();
    };
    auto isTag = [&](std::size_t at, std::string_view name) {
        if (text.compare(at, name.size(), name) != 0) return false;
        if (at + name.size() >= text.size()) return false;
        char next = text[at + name.size()];
        return next == '>' || next == '/' || next == ' ' || next == '\t' || next == '\n' ||
               next == '\r';
    };
    std::size_t depth = 0;
    std::size_t at = 0;
    while ((at = text.find('<', at)) != std::string_view::npos) {
        std::string_view rest = text.substr(at);
        if (rest.starts_with("<!--")) {
            at = skipPast(at + 4, "-->");
            continue;
        }
        if (rest.starts_with("<![CDATA[")) {
            at = skipPast(at + 9, "]]>");
            continue;
        }
        if (rest.starts_with("<?")) {
            at = skipPast(at + 2, "?>");
            continue;
        }
        const bool closing = rest.starts_with("</");
        const std::size_t name = at + (closing ? 2 : 1);
        const bool container = isTag(name, "array") || isTag(name, "dict");
        char quote = 0;
        std::size_t end = name;
        for (; end < text.size(); ++end) {
            char c = text[end];
            if (quote) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>') {
                break;
            }
        }
        if (end >= text.size()) return true;
        if (container) {
            if (closing) {
                if (depth > 0) --depth;
            } else if (text[end - 1] != '/' && ++depth > maxPropertyListDepth) {
                return false;
            }
        }
        at = end + 1;
    }
    return true;
}

}  // namespace

bool isBinaryPropertyList(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 8 && std::memcmp(bytes.data(), "bplist00", 8) == 0;
}

bool isWithinParseLimits(std::span<const std::uint8_t> bytes) {
    if (isBinaryPropertyList(bytes)) return BinaryWalk(bytes).isWithinLimits();
    return xmlIsWithinLimits(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

}  // namespace marzipel

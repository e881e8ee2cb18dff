#include "platform/plist/plist_parse_limits.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
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

        struct Pending {
            std::uint64_t object;
            std::size_t depth;
            bool isKey;
        };
        std::vector<Pending> pending{{root, 1, false}};
        std::size_t values = 1;
        while (!pending.empty()) {
            const Pending next = pending.back();
            pending.pop_back();
            std::uint64_t offset = 0;
            if (!objectOffset(next.object, offset)) return false;
            if (next.isKey) {
                if (!isAcceptableKey(offset)) return false;
                continue;
            }
            std::uint64_t first = 0;
            std::uint64_t count = 0;
            std::uint64_t keys = 0;
            // libplist reads a 16-byte integer, which holds values above INT64_MAX, as its low
            // 64 bits; refusing it beats a silently wrong number.
            if (bytes_[offset] == 0x14) return false;
            if (!children(offset, first, count, keys)) return false;
            if (count == 0) continue;
            if (next.depth + 1 > maxPropertyListDepth) return false;
            if (count > maxPropertyListValues - values) return false;
            values += count;
            for (std::uint64_t i = 0; i < count; ++i) {
                std::uint64_t child = 0;
                if (!readNumber(bytes_, first + i * refWidth_, refWidth_, child)) return false;
                if (child >= objectCount_) return false;
                pending.push_back({child, next.depth + 1, i < keys});
            }
        }
        return true;
    }

private:
    bool objectOffset(std::uint64_t object, std::uint64_t& offset) const {
        return readNumber(bytes_, offsetTable_ + object * offsetWidth_, offsetWidth_, offset) &&
               offset < bytes_.size();
    }

    /// The count in an object's marker, or in the integer after it when the marker says 0xF;
    /// `contents` is where the object's contents start.
    bool countAt(std::uint64_t offset, std::uint64_t& count, std::uint64_t& contents) const {
        count = bytes_[offset] & 0x0F;
        contents = offset + 1;
        if (count != 0x0F) return true;
        if (contents >= bytes_.size() || (bytes_[contents] >> 4) != 0x1) return false;
        const std::uint64_t width = std::uint64_t{1} << (bytes_[contents] & 0x0F);
        if (!readNumber(bytes_, contents + 1, width, count)) return false;
        contents += 1 + width;
        return true;
    }

    /// Where the references of a container start, how many there are and how many of them are
    /// dictionary keys (keys come first); no references for scalars.
    bool children(std::uint64_t offset, std::uint64_t& first, std::uint64_t& count,
                  std::uint64_t& keys) const {
        const std::uint8_t kind = bytes_[offset] >> 4;
        count = 0;
        keys = 0;
        // Arrays (0xA), sets (0xC) and dictionaries (0xD) hold references.
        if (kind != 0xA && kind != 0xC && kind != 0xD) return true;
        if (!countAt(offset, count, first)) return false;
        if (kind == 0xD) {
            if (count > maxPropertyListValues) return false;
            keys = count;
            count *= 2;
        }
        return count <= (bytes_.size() - first) / refWidth_;
    }

    /// libplist aborts on a dictionary key holding a NUL character, so such keys, and keys
    /// that are not strings at all, are refused here.
    bool isAcceptableKey(std::uint64_t offset) const {
        const std::uint8_t kind = bytes_[offset] >> 4;
        if (kind != 0x5 && kind != 0x6) return false;  // ASCII or UTF-16 text
        std::uint64_t length = 0;
        std::uint64_t contents = 0;
        if (!countAt(offset, length, contents)) return false;
        const std::uint64_t unit = kind == 0x5 ? 1 : 2;
        if (contents > bytes_.size() || length > (bytes_.size() - contents) / unit) return false;
        for (std::uint64_t i = 0; i < length; ++i) {
            const std::uint64_t at = contents + i * unit;
            if (bytes_[at] == 0 && (unit == 1 || bytes_[at + 1] == 0)) return false;
        }
        return true;
    }

    std::span<const std::uint8_t> bytes_;
    std::uint64_t offsetWidth_ = 0;
    std::uint64_t refWidth_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t offsetTable_ = 0;
};

/// Whether the integer text before the next tag reads as a 64-bit signed number the way libplist
/// reads it (optional sign, then C notation); text it cannot read at all is left to libplist.
bool fitsInt64(std::string_view text) {
    text = text.substr(0, text.find('<'));
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
        text.remove_prefix(1);
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const std::string digits(text);
    errno = 0;
    const unsigned long long magnitude = std::strtoull(digits.c_str(), nullptr, 0);
    if (errno == ERANGE) return false;
    constexpr auto limit = static_cast<unsigned long long>(INT64_MAX);
    return negative ? magnitude <= limit + 1 : magnitude <= limit;
}

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
        const bool integer = !closing && isTag(name, "integer");
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
        if (integer && text[end - 1] != '/' && !fitsInt64(text.substr(end + 1))) return false;
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

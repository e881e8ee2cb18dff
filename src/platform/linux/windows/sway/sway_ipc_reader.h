#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace marzipel {

/// Message types of Sway's IPC (i3's protocol) that Marzipel sends or reads.
enum class SwayMessageType : std::uint32_t {
    subscribe = 2,
    getTree = 4,
    workspaceEvent = 0x80000000u,
    windowEvent = 0x80000003u,
};

struct SwayMessage {
    std::uint32_t type = 0;
    std::string payload;

    friend bool operator==(const SwayMessage&, const SwayMessage&) = default;
};

/// One request in the socket's framing: "i3-ipc", payload length and type in the host's byte
/// order, then the payload.
std::string encodeSwayMessage(SwayMessageType type, std::string_view payload);

/// Cuts the bytes read from Sway's IPC socket into messages, whatever pieces they arrive in.
/// A stream that breaks the framing (another magic, a payload longer than the limit) stays
/// broken: nothing more is read from it, and its reader says why once.
class SwayIpcReader {
public:
    /// Far above what a desktop's whole window tree takes, far below what would hurt to hold.
    static constexpr std::size_t kDefaultMaxPayload = 1 << 20;

    explicit SwayIpcReader(std::size_t maxPayload = kDefaultMaxPayload) : maxPayload_(maxPayload) {}

    /// Takes the next bytes of the stream; false once the stream is broken.
    bool feed(std::string_view bytes);
    /// The oldest message not yet taken, complete.
    std::optional<SwayMessage> next();
    bool broken() const { return !error_.empty(); }
    /// Why the stream broke; empty while it is sound.
    const std::string& error() const { return error_; }

private:
    void cut();

    std::size_t maxPayload_;
    std::string pending_;
    std::deque<SwayMessage> messages_;
    std::string error_;
};

}  // namespace marzipel

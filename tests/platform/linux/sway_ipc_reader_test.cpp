#include "platform/linux/windows/sway/sway_ipc_reader.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/linux/windows/sway/sway_tree.h"

namespace marzipel {
namespace {

std::vector<SwayMessage> readAll(SwayIpcReader& reader) {
    std::vector<SwayMessage> messages;
    while (auto message = reader.next()) messages.push_back(*message);
    return messages;
}

TEST(SwayIpcReaderTest, CutsMessagesWhereverTheReadsSplitThem) {
    const std::vector<SwayMessage> sent{
        {static_cast<std::uint32_t>(SwayMessageType::windowEvent), R"({"change":"focus"})"},
        {static_cast<std::uint32_t>(SwayMessageType::getTree), ""},
        {static_cast<std::uint32_t>(SwayMessageType::subscribe), R"({"success":true})"}};
    std::string stream;
    for (const SwayMessage& message : sent)
        stream += encodeSwayMessage(static_cast<SwayMessageType>(message.type), message.payload);

    for (std::size_t first = 0; first <= stream.size(); ++first) {
        for (std::size_t second = first; second <= stream.size(); second += 7) {
            SwayIpcReader reader;
            std::vector<SwayMessage> got;
            for (const auto& [from, to] :
                 {std::pair{std::size_t{0}, first}, std::pair{first, second},
                  std::pair{second, stream.size()}}) {
                EXPECT_TRUE(reader.feed(std::string_view(stream).substr(from, to - from)));
                for (SwayMessage& message : readAll(reader)) got.push_back(std::move(message));
            }
            ASSERT_EQ(got, sent) << "cut at " << first << " and " << second;
        }
    }
}

TEST(SwayIpcReaderTest, StaysBrokenAfterAnotherMagicOrAnOverlongMessage) {
    const std::string good = encodeSwayMessage(SwayMessageType::getTree, "{}");
    const std::string overlong = encodeSwayMessage(SwayMessageType::getTree, std::string(65, ' '));
    std::string otherMagic = good;
    otherMagic[0] = 'I';
    for (const std::string& bad : {overlong, otherMagic}) {
        SwayIpcReader reader(64);
        // Only the header of the overlong message: it is refused before its payload comes.
        EXPECT_FALSE(reader.feed(good + bad.substr(0, 14)));
        EXPECT_TRUE(reader.broken() && !reader.error().empty());
        EXPECT_EQ(readAll(reader).size(), 1u) << "what came before the break is kept";
        EXPECT_FALSE(reader.feed(good));
        EXPECT_TRUE(readAll(reader).empty());
    }
}

// Xwayland windows have no app id; the class of the first window is taken from deep in the
// tree, the floating one after the tiled ones.
TEST(SwayTreeTest, NamesXwaylandWindowsByClass) {
    const auto tree = parseSwayTree(R"({"type":"root","nodes":[{"type":"workspace",
      "floating_nodes":[{"type":"floating_con","pid":90,"app_id":"mpv"}],
      "nodes":[{"type":"con","nodes":[{"type":"con","id":7,"pid":70,"app_id":null,
        "fullscreen_mode":2,"focused":true,"window_properties":{"class":"Vlc","instance":"vlc"}}]}]}]})");
    ASSERT_TRUE(tree && tree->focused);
    EXPECT_TRUE(tree->focused->id == 7 && tree->focused->fullScreen);
    EXPECT_EQ(tree->windows, (std::vector<WindowIdentity>{{70, std::nullopt, "vlc", "Vlc"},
                                                          {90, std::nullopt, "mpv", "mpv"}}));
}

}  // namespace
}  // namespace marzipel

#include "platform/plist/plist_codec.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstring>
#include <limits>

#include "platform/plist/plist_node.h"
#include "platform/plist/plist_parse_limits.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::optional<PlistValue> parse(std::string_view text) { return parsePropertyList(bytesOf(text)); }

std::string binaryOf(plist_t node) {
    char* raw = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(node, &raw, &length);
    PlistBuffer bytes(raw);
    return std::string(bytes.get(), length);
}

/// The binary form that libplist writes for the property list in `xml`.
std::string binaryOfXml(const std::string& xml) {
    plist_t raw = nullptr;
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &raw);
    PlistNode node(raw);
    return node ? binaryOf(node.get()) : "";
}

/// Every kind, with the awkward values of each.
PlistValue everyKind() {
    return PlistDictionary{
        {"no", false},
        {"yes", true},
        {"negative", std::int64_t{-42}},
        {"min", std::numeric_limits<std::int64_t>::min()},
        {"max", std::numeric_limits<std::int64_t>::max()},
        {"third", 1.0 / 3},
        {"tiny", -2.5e-300},
        {"text", "Grüße <&> \"quoted\" 'x' ]]> \t tab"},
        {"", ""},
        {"a key & <b>", PlistData{0, 1, 2, 0x7F, 0x80, 0xFF}},
        {"no bytes", PlistData{}},
        {"date", PlistDate{817011900}},
        {"before 2001", PlistDate{-86400}},
        {"array", PlistArray{1, "two", PlistArray{}, PlistDictionary{}}},
        {"nested", PlistDictionary{{"deeper", PlistArray{true, PlistDictionary{{"x", 3.5}}}}}},
    };
}

TEST(PlistCodecTest, EveryKindRoundTripsThroughXmlAndBinary) {
    const PlistValue value = everyKind();
    const std::string xml = toXmlPropertyList(value);
    EXPECT_TRUE(xml.starts_with("<?xml")) << xml;
    EXPECT_EQ(parse(xml), value);

    const std::string binary = binaryOfXml(xml);
    ASSERT_TRUE(binary.starts_with("bplist00"));
    EXPECT_EQ(parse(binary), value);
}

TEST(PlistCodecTest, RefusesWhatIsNotAPropertyList) {
    PlistNode archive(plist_new_array());
    plist_array_append_item(archive.get(), plist_new_uid(7));
    const std::string withUid = binaryOf(archive.get());
    const std::string valid = binaryOf(PlistNode(plist_new_string("fine")).get());

    std::string badReference = binaryOf(PlistNode(plist_new_array()).get());
    badReference[badReference.size() - 9] = 9;  // the root object is past the object table

    // libplist aborts on a NUL in a dictionary key, in ASCII and in UTF-16 keys alike.
    PlistNode dictionary(plist_new_dict());
    plist_dict_set_item(dictionary.get(), "ab", plist_new_bool(1));
    plist_dict_set_item(dictionary.get(), "\xC3\xA9t\xC3\xA9", plist_new_bool(1));
    const std::string keys = binaryOf(dictionary.get());
    ASSERT_TRUE(parse(keys));
    std::string asciiNul = keys;
    asciiNul[asciiNul.find("\122ab") + 2] = '\0';  // \122: an ASCII string of two
    std::string utf16Nul = keys;
    const std::size_t utf16 = utf16Nul.find(std::string("\x63\x00\xE9\x00t", 5));
    ASSERT_NE(utf16, std::string::npos);
    utf16Nul.replace(utf16 + 3, 2, 2, '\0');

    const std::string_view inputs[] = {
        "",
        "not a plist",
        "<plist version=\"1.0\"><array><string>x</string></plist>",
        "<plist version=\"1.0\"><dict><key>a</key><integer>1</integer>",
        // Text that is not UTF-8, as a value and as a key.
        "<plist version=\"1.0\"><string>\xff\xfe</string></plist>",
        "<plist version=\"1.0\"><dict><key>\xc0\xaf</key><true/></dict></plist>",
        "bplist00",
        std::string_view(valid).substr(0, valid.size() - 1),
        badReference,
        withUid,
        asciiNul,
        utf16Nul,
        std::string_view("\0\0\0\0", 4),
    };
    for (std::string_view input : inputs) EXPECT_EQ(parse(input), std::nullopt) << input;
}

TEST(PlistCodecTest, RefusesIntegersOutsideTheSignedRangeRatherThanWrappingThem) {
    auto integer = [](std::string_view digits) {
        return "<plist version=\"1.0\"><integer>" + std::string(digits) + "</integer></plist>";
    };
    EXPECT_EQ(parse(integer(" 9223372036854775807 ")), PlistValue(INT64_MAX));
    EXPECT_EQ(parse(integer("0x10")), PlistValue(16));
    EXPECT_EQ(parse(integer("9223372036854775808")), std::nullopt);
    EXPECT_EQ(parse(integer("-9223372036854775809")), std::nullopt);
    EXPECT_EQ(parse(integer("99999999999999999999999")), std::nullopt);

    const std::string huge = binaryOfXml(integer("18446744073709551615"));
    ASSERT_TRUE(huge.starts_with("bplist00"));
    EXPECT_EQ(parse(huge), std::nullopt);
}

std::string nestedXml(std::size_t depth, std::string_view between = "") {
    std::string xml = "<plist version=\"1.0\">";
    for (std::size_t i = 0; i < depth; ++i) (xml += "<array>") += between;
    for (std::size_t i = 0; i < depth; ++i) xml += "</array>";
    return xml + "</plist>";
}

TEST(PlistCodecTest, RefusesNestingTooDeepForTheParser) {
    auto within = [](const std::string& xml) { return isWithinParseLimits(bytesOf(xml)); };
    EXPECT_TRUE(parse(nestedXml(maxPropertyListDepth)));
    EXPECT_FALSE(parse(nestedXml(maxPropertyListDepth + 1)));
    EXPECT_FALSE(within(nestedXml(maxPropertyListDepth + 1)));
    // Closing tags that the parser skips must not hide the nesting.
    for (std::string_view hidden : {"<!-- > </array> -->", "<![CDATA[ > </dict> ]]>",
                                    "<?pi > </array> ?>", "<key a='>' b=\"</array>\"/>"})
        EXPECT_FALSE(within(nestedXml(maxPropertyListDepth + 1, hidden))) << hidden;
    EXPECT_TRUE(within(nestedXml(maxPropertyListDepth - 1, "<array/><dict ></dict><dict\n/>")));

    const std::string binaryTooDeep = binaryOfXml(nestedXml(maxPropertyListDepth + 1));
    ASSERT_TRUE(binaryTooDeep.starts_with("bplist00"));
    EXPECT_FALSE(isWithinParseLimits(bytesOf(binaryTooDeep)));
    EXPECT_TRUE(parse(binaryOfXml(nestedXml(maxPropertyListDepth))));
}

/// A binary list of `levels` arrays, each holding the next one twice: tiny on disk, but the
/// reader copies every use, so the expanded tree has 2^levels leaves.
std::string selfMultiplyingBinary(std::uint8_t levels) {
    std::string data = "bplist00";
    std::string offsets;
    for (std::uint8_t level = 0; level <= levels; ++level) {
        offsets += static_cast<char>(data.size());
        const char next = static_cast<char>(level + 1);
        data += level < levels ? std::string{'\xA2', next, next} : std::string{'\xA0'};
    }
    const std::size_t table = data.size();
    data += offsets;
    std::string trailer(32, '\0');
    trailer[6] = 1;
    trailer[7] = 1;
    trailer[15] = static_cast<char>(levels + 1);
    trailer[31] = static_cast<char>(table);
    return data + trailer;
}

TEST(PlistCodecTest, RefusesSharedObjectsThatExpandBeyondTheLimit) {
    EXPECT_TRUE(parse(selfMultiplyingBinary(4)));
    EXPECT_FALSE(parse(selfMultiplyingBinary(40)));
}

// Missing files, folders and files past the limit are read through the bundle files' tests.
TEST(PlistCodecTest, ReadsFilesUpToTheSizeLimit) {
    TempFolder folder;
    const std::string path = folder.file("Info.plist");
    const PlistValue value = PlistDictionary{{"CFBundleName", "VLC"}};
    const std::string xml = toXmlPropertyList(value);
    writeFile(path, xml);
    EXPECT_EQ(readPropertyListFile(path, xml.size()), value);
    EXPECT_EQ(readPropertyListFile(path, xml.size() - 1), std::nullopt);
}

}  // namespace
}  // namespace marzipel

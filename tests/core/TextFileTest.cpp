#include "rig/Test.h"

namespace tidewell {
namespace {

using namespace std::string_view_literals;

TEST(TextFile, TellsUtf8FromOtherBytes) {
    for (const char* bytes :
         {"\x80", "\xC3", "\xC0\xAF", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
          "a\xE9z", "\xE2\x82", "\xF0\x9F\x98", "\xFF", "\xC3\xC3", "\xE2\x82z"})
        EXPECT_FALSE(IsValidUtf8(bytes)) << bytes;
    for (const char* bytes :
         {"", "plain\x7F", "\xC2\x80", "\xC3\xA9", "\xDF\xBF", "\xE0\xA0\x80", "\xE2\x82\xAC", "\xED\x9F\xBF",
          "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(IsValidUtf8(bytes)) << bytes;
}

// Bytes, their text and how they are told apart; the text gives the same bytes again.
TEST(TextFile, DecodesAndEncodes) {
    const std::tuple<std::string_view, std::string_view, EEncoding> table[] = {
        {"", "", EEncoding::Utf8},
        {"\xEF\xBB\xBF", "", EEncoding::Utf8WithMark},
        {"\xEF\xBB\xBFpr\xC3\xA9", "pr\xC3\xA9", EEncoding::Utf8WithMark},
        {"\xEF\xBB", "\xC3\xAF\xC2\xBB", EEncoding::Windows1252},
        {"\x80 \x9F\xA0\xE9", "\xE2\x82\xAC \xC5\xB8\xC2\xA0\xC3\xA9", EEncoding::Windows1252},
        {"\xFF\xFE", "", EEncoding::Utf16LittleEndian},
        {"\xFF\xFE"
         "a\0\xE9\0=\xD8\0\xDE"sv,
         "a\xC3\xA9\xF0\x9F\x98\x80", EEncoding::Utf16LittleEndian},
        {"\xFE\xFF\0\x7F\0\x80\x07\xFF\x08\0\xD7\xFF\xE0\0\xFF\xFF\xD8\0\xDC\0\xDB\xFF\xDF\xFF"sv,
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF"
         "\xBF",
         EEncoding::Utf16BigEndian},
    };
    EEncoding encoding{};
    for (const auto& [bytes, text, read] : table) {
        EXPECT_EQ(DecodeText(bytes, encoding), text);
        EXPECT_EQ(encoding, read) << text;
        EXPECT_EQ(EncodeText(text, read), bytes);
    }
    // Half a unit, half a pair, a pair the wrong way round: no UTF-16.
    for (const auto bytes :
         {"\xFF\xFE\0"sv, "\xFF\xFE=\xD8"sv, "\xFE\xFF\xDC\0\xD8\0"sv, "\xFE\xFF\xD8\0\xDB\xFF"sv,
          "\xFE\xFF\xD8\0\xE0\0"sv, "\xFE\xFF\xDF\xFF\xDC\0"sv}) {
        DecodeText(bytes, encoding);
        EXPECT_EQ(encoding, EEncoding::Windows1252);
    }
    // What would not come back as it was comes out as UTF-8: a snowman, and what looks like Unicode in bytes.
    for (const char* text :
         {"\xC3\xA9 \xE2\x98\x83", "\xC3\x83\xC2\xA9", "\xF0\x9F\x98\x80", "\xC4\x80", "\xFF",
          "\xC3\xBF\xC3\xBE"
          "ab"})
        EXPECT_EQ(EncodeText(text, EEncoding::Windows1252), text);
    EXPECT_EQ(EncodeText("\xFF", EEncoding::Utf16BigEndian), "\xFF");
}

TEST(TextFile, Lines) {
    using testing::ElementsAre;
    EXPECT_THAT(SplitLines(""), testing::IsEmpty());
    EXPECT_THAT(SplitLines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(SplitLines("a\n\n"), ElementsAre("a", ""));
}

} // namespace
} // namespace tidewell

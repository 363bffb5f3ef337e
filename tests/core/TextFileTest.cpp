#include "core/TextFile.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

namespace tidewell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TextFile, TellsUtf8FromOtherBytes) {
    for (const char* bytes : {"\x80", "\xC3", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                              "\xF8\x88\x80\x80\x80", "a\xE9z", "\xE2\x82", "\xF0\x9F\x98", "\xFF"})
        EXPECT_FALSE(IsValidUtf8(bytes)) << bytes;
    for (const char* bytes :
         {"", "plain", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(IsValidUtf8(bytes)) << bytes;
}

TEST(TextFile, DecodesAndEncodes) {
    EEncoding encoding{};
    EXPECT_EQ(DecodeText("\xEF\xBB\xBFpr\xC3\xA9", encoding), "pr\xC3\xA9");
    EXPECT_EQ(encoding, EEncoding::Utf8WithMark);
    EXPECT_EQ(DecodeText("\x80 \xE9", encoding), "\xE2\x82\xAC \xC3\xA9");
    EXPECT_EQ(encoding, EEncoding::Windows1252);
    EXPECT_EQ(EncodeText("\xE2\x82\xAC\xC3\xA9", EEncoding::Windows1252), "\x80\xE9");
    // What would not come back as it was comes out as UTF-8: a snowman, and what looks like UTF-8 in bytes.
    for (const char* text : {"\xC3\xA9 \xE2\x98\x83", "\xC3\x83\xC2\xA9", "\xF0\x9F\x98\x80"})
        EXPECT_EQ(EncodeText(text, EEncoding::Windows1252), text);
    // UTF-16 behind its mark, a pair of units too; half a pair or half a unit is none.
    using namespace std::string_view_literals;
    for (const auto& [bytes, read] : {std::pair{"\xFF\xFE"
                                                "a\0\xE9\0=\xD8\0\xDE"sv,
                                                EEncoding::Utf16LittleEndian},
                                      std::pair{"\xFE\xFF"
                                                "\0a\0\xE9\xD8=\xDE\0"sv,
                                                EEncoding::Utf16BigEndian}}) {
        const std::string text = DecodeText(bytes, encoding);
        EXPECT_EQ(text, "a\xC3\xA9\xF0\x9F\x98\x80");
        EXPECT_EQ(encoding, read);
        EXPECT_EQ(EncodeText(text, read), bytes);
        for (const std::size_t cut : {1U, 2U}) {
            DecodeText(bytes.substr(0, bytes.size() - cut), encoding);
            EXPECT_EQ(encoding, EEncoding::Windows1252);
        }
    }
    EXPECT_EQ(EncodeText("\xC3\xBF\xC3\xBE"
                         "ab",
                         EEncoding::Windows1252),
              "\xC3\xBF\xC3\xBE"
              "ab");
    // Every byte survives, those without a character too.
    std::string bytes;
    for (int i = 255; i >= 0; --i)
        bytes += static_cast<char>(i);
    EXPECT_EQ(EncodeText(DecodeText(bytes, encoding), encoding), bytes);
}

TEST(TextFile, Lines) {
    EXPECT_THAT(SplitLines(""), IsEmpty());
    EXPECT_THAT(SplitLines("a\r\nb\nc\rd"), ElementsAre("a", "b", "c", "d"));
    EXPECT_THAT(SplitLines("a\n\n"), ElementsAre("a", ""));
    test::TMemoryFiles files;
    files.CreateDirectories("/d");
    WriteLines(files, "/d/f", {"a", "", "b"});
    EXPECT_EQ(files.Read("/d/f"), "a\r\n\r\nb\r\n");
    EXPECT_THAT(ReadLines(files, "/d/f"), ElementsAre("a", "", "b"));
    files.Room = 2;
    EXPECT_THROW(WriteLines(files, "/d/f", {"new", "lines"}), EInOutError);
    EXPECT_EQ(files.Read("/d/f"), "a\r\n\r\nb\r\n");
    EXPECT_THROW(ReadLines(files, "/d/none"), EInOutError);
}

} // namespace
} // namespace tidewell

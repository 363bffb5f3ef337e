#include "core/IniFile.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

#include <random>
#include <tuple>

namespace tidewell {
namespace {

using testing::ElementsAre;
using testing::ThrowsMessage;

std::vector<std::string> Rows(const TIniSection& section) {
    std::vector<std::string> rows;
    for (const auto& row : section.Rows())
        rows.push_back(row.Name + "|" + row.Value);
    return rows;
}

TEST(IniFile, ReadsWhatPeopleWrite) {
    const TIniFile file("early=1\r\n; comment=1\r\n"
                        "[ One ]\r\n name = a;b=c \nno equals sign\rNAME=second\nq=\"  kept  \"\n"
                        "s='x'\nhalf=\"\nempty=\n=nameless\n"
                        "[Two] tail\n[unclosed\nk=v\n[ONE]\nlater=1\n[]\n[");
    EXPECT_THAT(file.SectionNames(), ElementsAre("", "One", "Two", "unclosed"));
    EXPECT_THAT(Rows(file.ReadSection("one")), ElementsAre("name|a;b=c", "NAME|second", "q|  kept  ", "s|x",
                                                           "half|\"", "empty|", "|nameless", "later|1"));
    const std::tuple<const char*, const char*, const char*> texts[] = {
        {"", "early", "1"},         {"oNe", "Name", "a;b=c"},    {"One", "empty", ""},
        {"One", "none", "default"}, {"None", "none", "default"}, {"unclosed", "k", "v"},
    };
    for (const auto& [section, key, value] : texts)
        EXPECT_EQ(file.ReadText(section, key, "default"), value) << key;
    EXPECT_EQ(file.Find("One", "comment"), std::nullopt);
    EXPECT_TRUE(file.SectionExists("TWO") && file.ReadSection("Two").Empty());
    EXPECT_FALSE(file.SectionExists("three"));

    const TIniSection one = file.ReadSection("One");
    EXPECT_EQ(one.Value("name"), "a;b=c");
    EXPECT_EQ(one.Find("nam"), std::nullopt);
    EXPECT_EQ(one.ValueAt(1) + one.ValueAt(8) + one.Value("LATER"), "second1");
}

TEST(IniFile, NumbersAndTheThreeMannersOfBooleans) {
    test::TMemoryFiles files;
    files.Put("/a.inn", "[S]\nt=TRUE\nf=False\none=1\nzero=0\nno=no\nempty=\nn=12\nbad=12x\nhex=$10\n");
    const TIniFile file(files, "/a.inn");
    for (const std::string key : {"t", "f", "one", "no", "empty", "missing"}) {
        EXPECT_EQ(file.ReadTrue("s", key), key == "t") << key;
        EXPECT_EQ(file.ReadNotFalse("s", key), key != "f") << key;
    }
    EXPECT_TRUE(file.ReadStrict("S", "t") && file.ReadStrict("S", "one"));
    EXPECT_FALSE(file.ReadStrict("S", "zero") || file.ReadStrict("S", "missing", "FALSE"));
    EXPECT_THROW(file.ReadStrict("S", "missing"), EConvertError);
    EXPECT_THROW(file.ReadStrict("S", "empty", "FALSE"), EConvertError);
    EXPECT_THAT([&] { file.ReadStrict("S", "no"); },
                ThrowsMessage<EConvertError>("/a.inn: [S] no: 'no' is not a valid boolean value"));
    for (const auto& [key, value] : {std::pair{"n", 12}, {"hex", 16}, {"bad", 5}, {"missing", 5}})
        EXPECT_EQ(file.ReadInteger("S", key, 5), value) << key;
}

// What is written, into what, and what comes out.
TEST(IniFile, WritesOnlyTheLinesOfTheKeys) {
    struct TCase {
        std::string Before, Section, Key, Value, After;
    };
    const TCase table[] = {
        {"", "S", "k", "v", "[S]\r\nk=v\r\n"},
        {"; top\r\n\r\n[s]\r\n K =  old  \r\nk=dup\r\nodd\r\n", "S", "k", "new",
         "; top\r\n\r\n[s]\r\n K =  new\r\nk=dup\r\nodd\r\n"},
        {"[S]\nk=\n[T]\n", "S", "k", "v", "[S]\nk=v\n[T]\n"},
        {"[S]\nk=\"old\"\n", "S", "k", "new", "[S]\nk=\"new\"\n"},
        {"[S]\nk=old\n", "S", "k", "'new'", "[S]\nk=\"'new'\"\n"},
        {"[S]\nk=a=b;c\n", "S", "k", "=;", "[S]\nk==;\n"},
        {"[S]\nk=same \n", "S", "k", "same", "[S]\nk=same \n"},
        {"[S]\na=1\n\n; about T\n[T]\nb=2", "S", "k", "v", "[S]\na=1\nk=v\n\n; about T\n[T]\nb=2"},
        {"[S]\na=1\n[T]\nb=2", "T", "k", "v", "[S]\na=1\n[T]\nb=2\nk=v"},
        {"[S]\na=1\n[T]\n[S]\nb=2\n", "S", "k", "v", "[S]\na=1\nk=v\n[T]\n[S]\nb=2\n"},
        {"\xEF\xBB\xBF[S]\rk=\xC3\xA9\r", "S", "k", "\xE2\x82\xAC", "\xEF\xBB\xBF[S]\rk=\xE2\x82\xAC\r"},
        {"[S]\r\nx=\xE9\x81\r\nk=\xE9\n", "S", "k", "\xE2\x82\xAC", "[S]\r\nx=\xE9\x81\r\nk=\x80\n"},
    };
    for (const auto& [before, section, key, value, after] : table) {
        test::TMemoryFiles files;
        files.Put("/f.ini", before);
        TIniFile file(files, "/f.ini");
        EXPECT_EQ(file.Bytes(), before);
        file.WriteText(section, key, value);
        EXPECT_EQ(file.ReadText(section, key), value);
        file.Save(files);
        EXPECT_EQ(files.Read("/f.ini"), after) << before;
        EXPECT_EQ(TIniFile(files, "/f.ini").ReadText(section, key), value);
    }
}

TEST(IniFile, SaveKeepsTheFileWhenItMust) {
    test::TMemoryFiles files;
    files.Put("/d/f.ini", "[S]\nk=1\n");
    files.Unwritable.insert("/d/f.ini");
    TIniFile file(files, "/d/f.ini");
    file.WriteText("S", "k", "1");
    file.Save(files); // nothing to write, so nothing is refused
    file.WriteText("S", "k", "2");
    EXPECT_THROW(file.Save(files), EInOutError);
    files.Unwritable.clear();
    files.Room = 3;
    EXPECT_THROW(file.Save(files), EInOutError);
    EXPECT_EQ(files.Read("/d/f.ini"), "[S]\nk=1\n");
    files.Room = 1000;
    file.Save(files);
    EXPECT_EQ(files.Read("/d/f.ini"), "[S]\nk=2\n");
    for (const char* value : {"a\nb", "a\rb", "a\xE9"})
        EXPECT_THROW(file.WriteText("S", "k", value), EConvertError);
}

// A file that has become UTF-8 stays so, even when the character that forced it goes.
TEST(IniFile, TurnsIntoUtf8AsAWhole) {
    test::TMemoryFiles files;
    files.Put("/f.ini", "; K\xFChler \x80\r\n[S]\r\nk=\xE9\r\n");
    TIniFile file(files, "/f.ini");
    for (const std::string value : {"\xE2\x98\x83", "plain"}) {
        file.WriteText("S", "k", value);
        file.Save(files);
        EXPECT_EQ(files.Read("/f.ini"), "; K\xC3\xBChler \xE2\x82\xAC\r\n[S]\r\nk=" + value + "\r\n");
    }
}

// A file that is there and cannot be read reads as empty, but is not replaced by what is then written.
TEST(IniFile, DoesNotReplaceWhatItCouldNotRead) {
    struct TUnreadable : test::TMemoryFiles {
        std::string Read(const std::filesystem::path&) const override { throw EInOutError("why"); }
    } files;
    files.Put("/f.ini", "[S]\nk=1\n");
    TIniFile file(files, "/f.ini");
    EXPECT_FALSE(file.SectionExists("S"));
    file.WriteText("S", "k", "2");
    EXPECT_THAT([&] { file.Save(files); },
                ThrowsMessage<EInOutError>("Cannot write /f.ini, which could not be read: why"));
    EXPECT_EQ(files.Content.at("/f.ini"), "[S]\nk=1\n");
}

// Any bytes read, and come back as they were with one line more.
TEST(IniFile, StandsAnyBytes) {
    std::mt19937 random(7);
    const std::string alphabet = std::string("[]=;\"' \r\n\tab") + '\0' + "\xE9\xC3\xA9\xEF\xBB\xBF\x81";
    for (int i = 0; i < 3000; ++i) {
        std::string bytes(random() % 60, ' ');
        for (auto& c : bytes)
            c = alphabet[random() % alphabet.size()];
        TIniFile file(bytes);
        ASSERT_EQ(file.Bytes(), bytes);
        for (const auto& section : file.SectionNames())
            for (const auto& row : file.ReadSection(section).Rows())
                ASSERT_TRUE(file.Find(section, row.Name).has_value());
        file.WriteText("new", "key", "value");
        ASSERT_EQ(TIniFile(file.Bytes()).ReadText("new", "key"), "value");
        ASSERT_TRUE(file.Bytes().starts_with(bytes));
    }
}

} // namespace
} // namespace tidewell

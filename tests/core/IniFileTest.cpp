#include "rig/Test.h"

// That any bytes are read, and come back as they were, is told by the program that feeds it bytes of chance.
namespace tidewell {
namespace {

TEST(IniFile, ReadsWhatPeopleWrite) {
    const TIniFile file("early=1\r\n; comment=1\r\n"
                        "[ One ]\r\n name = a;b=c \nno equals sign\rNAME=second\nq=\"  kept  \"\n"
                        "s='x'\nmixed='x\"\nhalf=\"\nnone=\"\"\nempty=\n=nameless\n"
                        "[Two] tail\n[unclosed\nk=v\n[ONE]\nlater=1\n[]\n[");
    EXPECT_THAT(file.SectionNames(), testing::ElementsAre("", "One", "Two", "unclosed"));
    const TIniSection one = file.ReadSection("one");
    std::string rows;
    for (const auto& row : one.Rows())
        rows += row.Name + "|" + row.Value + "\n";
    EXPECT_EQ(rows,
              "name|a;b=c\nNAME|second\nq|  kept  \ns|x\nmixed|'x\"\nhalf|\"\nnone|\nempty|\n|nameless\n"
              "later|1\n");
    test::ExpectRows(
        [&](std::string_view input) {
            const auto key = SplitStrictly(input, '/');
            return file.ReadText(key.at(0), key.at(1), "default");
        },
        {"/early -> 1", "oNe/Name -> a;b=c", "One/LATER -> 1", "One/none -> ", "One/nam -> default",
         "One/z -> default", "One/comment -> default", "None/k -> default", "Two/k -> default",
         "unclosed/k -> v"});
    EXPECT_TRUE(file.SectionExists("TWO") && file.ReadSection("Two").Empty());
    EXPECT_FALSE(file.SectionExists("three"));
    EXPECT_EQ(one.Value("nAme") + one.ValueAt(1) + one.ValueAt(9) + one.ValueAt(10), "a;b=csecond1");
}

TEST(IniFile, NumbersAndTheThreeMannersOfBooleans) {
    const TIniFile file("[S]\nt=TRUE\nf=False\n1=1\n0=0\nno=no\nempty=\nn=12\nbad=12x\nhex=$10\n");
    // "true" alone, all but "false", strictly with "false" for what is missing, and a number.
    test::ExpectRows(
        [&](std::string_view key) {
            return BooleanText(file.ReadTrue("s", key)) + " " + BooleanText(file.ReadNotFalse("s", key)) +
                   " " + std::to_string(file.ReadInteger("S", key, 5)) + " " +
                   BooleanText(file.ReadStrict("s", key, "FALSE"));
        },
        {"no -> [s] no: 'no' is not a valid boolean value",
         "empty -> [s] empty: '' is not a valid boolean value",
         "bad -> [s] bad: '12x' is not a valid boolean value", "missing -> False True 5 False",
         "t -> True True 5 True", "f -> False False 5 False", "1 -> False True 1 True",
         "0 -> False True 0 False", "n -> False True 12 True"});
    EXPECT_EQ(file.ReadInteger("S", "hex", 5), 16);
    EXPECT_EQ(TIniFile(test::TMemoryFiles(), "/a.inn").Where("S", "k"), "/a.inn: [S] k: ");
}

// Value and file; what becomes of the file when the value is written under key "k" of section "S".
TEST(IniFile, WritesOnlyTheLinesOfTheKeys) {
    const auto written = [](std::string_view input) {
        test::TMemoryFiles files;
        files.Put("/f.ini", test::Piece(input, 1));
        TIniFile file(files, "/f.ini");
        file.WriteText("S", "k", test::Piece(input, 0));
        file.Save(files);
        return files.Read("/f.ini");
    };
    test::ExpectRows(written,
                     {"new|; top\r\n\r\n[s]\r\n K =  old  \r\nk=dup\r\nodd\r\n -> ; top\r\n\r\n[s]\r\n K =  "
                      "new\r\nk=dup\r\nodd\r\n",
                      "v|[S]\nk=\n[T]\n -> [S]\nk=v\n[T]\n", "new|[S]\nk=\"old\"\n -> [S]\nk=\"new\"\n",
                      "'new'|[S]\nk=old\n -> [S]\nk=\"'new'\"\n", " new|[S]\nk=old\n -> [S]\nk=\" new\"\n",
                      "\"|[S]\nk=old\n -> [S]\nk=\"\n", "=;|[S]\nk=a=b;c\n -> [S]\nk==;\n",
                      "same|[S]\nk=same \n -> [S]\nk=same \n",
                      "\xE2\x82\xAC|\xEF\xBB\xBF[S]\rk=\xC3\xA9\r -> \xEF\xBB\xBF[S]\rk=\xE2\x82\xAC\r",
                      "\xE2\x82\xAC|[S]\r\nx=\xE9\x81\r\nk=\xE9\n -> [S]\r\nx=\xE9\x81\r\nk=\x80\n"});
    test::ExpectRows(written, {"v| -> [S]\r\nk=v\r\n", "v|[S]\n[T]\n -> [S]\nk=v\n[T]\n",
                               "v|[T]\nb=2\n[S]\na=1 -> [T]\nb=2\n[S]\na=1\nk=v",
                               "v|[S]\na=1\n\n; about T\n[T]\nb=2 -> [S]\na=1\nk=v\n\n; about T\n[T]\nb=2",
                               "v|[S]\na=1\n[T]\n[S]\nb=2\n -> [S]\na=1\nk=v\n[T]\n[S]\nb=2\n"});
    for (const char* value : {"a\nb", "a\rb", "a\xE9"})
        EXPECT_THROW(TIniFile("").WriteText("S", "k", value), EConvertError);
    TIniFile file("[S]\n[T]\n");
    for (const char* key : {"a", "b", "A"})
        file.WriteText("S", key, key);
    EXPECT_EQ(file.Bytes(), "[S]\na=A\nb=b\n[T]\n");
}

TEST(IniFile, SaveKeepsTheFileWhenItMust) {
    test::TMemoryFiles files;
    const std::filesystem::path path = "/f.ini";
    files.Put(path, "[S]\nk=1\n");
    TIniFile file(files, path);
    files.Unwritable.insert(path);
    file.WriteText("S", "k", "2");
    EXPECT_THROW(file.Save(files), EInOutError);
    files.Unwritable.clear();
    file.Save(files); // not lost
    EXPECT_EQ(files.Read(path), "[S]\nk=2\n");
    // A file that has become UTF-8 stays so, even when the character that forced it goes.
    files.Put(path, "; K\xFChler \x80\r\n[S]\r\nk=\xE9\r\n");
    TIniFile other(files, path);
    for (const std::string value : {"\xE2\x98\x83", "plain"}) {
        other.WriteText("S", "k", value);
        other.Save(files);
        EXPECT_EQ(files.Read(path), "; K\xC3\xBChler \xE2\x82\xAC\r\n[S]\r\nk=" + value + "\r\n");
    }
    // A file that is there and cannot be read reads as empty, but is not replaced by what is then written.
    struct TUnreadable : test::TMemoryFiles {
        std::string Read(const std::filesystem::path&) const override { throw EInOutError("why"); }
    } refusing;
    refusing.Put(path, "[S]\nk=1\n");
    TIniFile unread(refusing, path);
    unread.WriteText("S", "k", "2");
    EXPECT_THAT([&] { unread.Save(refusing); },
                testing::ThrowsMessage<EInOutError>("Cannot write /f.ini, which could not be read: why"));
}

} // namespace
} // namespace tidewell

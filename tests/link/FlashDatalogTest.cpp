#include "ServiceFixture.h"
#include "core/LanguageTexts.h"

#include <array>
#include <cstdint>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::IsSupersetOf;

using TBytes = std::vector<std::uint8_t>;

// A record of 5 March 2024, 07:30, with -3 as its second value and the rest counted up.
TBytes Record(int firstValue) {
    TBytes bytes;
    const auto add = [&bytes](int word) {
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
        bytes.push_back(static_cast<std::uint8_t>(word));
    };
    add(0x3065);
    add(0x071E);
    add(firstValue);
    add(-3);
    for (int value = 2; value < 126; ++value)
        add(value);
    return bytes;
}

std::string RowText(int number, int firstValue) {
    std::string text = std::to_string(number) + ";05-03-2024;07:30:00;" + std::to_string(firstValue) + ";-3;";
    for (int value = 2; value < 126; ++value)
        text += std::to_string(value) + ";";
    return text;
}

const std::string header = ";[HeaderStart]x[HeaderEnd]\r\n";
const std::string fileName = "FDlog_123456789012_02-03-20260800.csv";

TEST(FlashBlocks, CoversTheRangeInUpToThreeRuns) {
    struct TCase {
        int L, U, C;
        int Start, Slut;
        std::array<std::pair<int, int>, 3> Runs;
        std::vector<std::string> qlist;
    };
    const std::string base = "131072";
    const std::string second = std::to_string(0xD30000);
    for (const auto& [l, u, c, start, slut, runs, qlist] : std::vector<TCase>{
             {10, 50, 100, 50, 90, {{{50, 40}}}, {std::to_string(0x52000), std::to_string(0x28000)}},
             {0, 200, 100, 6508, 100, {{{6508, 100}, {0, 100}}}, {"30064640", "409600", base, "409600"}},
             {0, 0, 100, 100, 100, {{{100, 0}}}, {"540672", "0"}},
             // Both ends before the wrap, in one area and on both sides of its border.
             {200, 300, 100, 6408, 6508, {{{6408, 100}}}, {"29655040", "409600"}},
             {100, 5000, 0, 1608, 6508, {{{1608, 936}, {2544, 3964}}}, {"6717440", "3833856", second}},
             {4064, 5000, 0, 1608, 2544, {{{1608, 936}}}, {"6717440"}}, // up to the border
             // All of the second area between both ends.
             {0,
              6608,
              0,
              0,
              0,
              {{{0, 2544}, {2544, 4064}, {0, 0}}},
              {base, "10420224", second, "16646144", base, "0"}},
             {0, 6500, 5, 113, 5, {{{113, 2431}, {2544, 4064}, {0, 5}}}, {}},
             // An end in the second area asks for the length of the whole ring.
             {0, 8000, 3000, 1608, 3000, {{{1608, 936}, {2544, 6608}, {0, 3000}}}, {}},
             // Not wrapped: no split at the border.
             {10, 1000, 3000, 2000, 2990, {{{2000, 990}}}, {"8323072", "4055040"}},
             {0, 600, 2544, 1944, 2544, {{{1944, 600}}}, {}},
             // From the second area on.
             {0, 4000, 3000, 5608, 3000, {{{5608, 1000}, {0, 3000}}}, {}},
             {0, 6608, 65535, 58927, 65535, {{{58927, 6608}}}, {}}, // a counter beyond the ring
         }) {
        const TFlashBlocks blocks = CalcFlashBlocks(l, u, c);
        SCOPED_TRACE(std::to_string(l) + " to " + std::to_string(u) + " at " + std::to_string(c));
        EXPECT_EQ(std::pair(blocks.AbsolutStartBlock, blocks.AbsolutSlutBlock), std::pair(start, slut));
        for (std::size_t run = 0; run < runs.size(); ++run) {
            EXPECT_EQ(std::pair(blocks.BlockNumberStart[run], blocks.BlockNumberLength[run]), runs[run]);
            EXPECT_EQ(blocks.BlockAdrLength[run], runs[run].second * 4096);
        }
        ASSERT_EQ(blocks.qlist.size(), 6U);
        EXPECT_TRUE(std::equal(qlist.begin(), qlist.end(), blocks.qlist.begin()))
            << testing::PrintToString(blocks.qlist);
    }
    EXPECT_EQ(FlashBlockAddress(2543), 0xA0F000);
    EXPECT_EQ(FlashBlockAddress(2544), 0xD30000);
}

TEST(FlashRecords, LimitsDatesAndTimesAndReadsSignedWords) {
    const auto row = [](std::uint8_t d1, std::uint8_t d0, std::uint8_t hour, std::uint8_t minute) {
        std::array<std::uint8_t, 256> record{d1, d0, hour, minute, 0x80, 0x00, 0x7F, 0xFF};
        record[255] = 9;
        return TFlashRecords::Row(12, record);
    };
    std::string zeros;
    for (int i = 0; i < 123; ++i)
        zeros += "0;";
    EXPECT_EQ(row(0x30, 0x65, 7, 0x1E), "12;05-03-2024;07:30:00;-32768;32767;" + zeros + "9;");
    EXPECT_TRUE(row(0xFF, 0xFF, 0xFF, 0xFF).starts_with("12;31-12-2099;23:59:00;"));
    EXPECT_TRUE(row(0, 0, 23, 60).starts_with("12;00-00-2000;23:59:00;"));
    EXPECT_TRUE(row(99 << 1 | 1, 12 << 5 & 0xFF, 24, 59).starts_with("12;00-12-2099;23:59:00;"));
}

TEST_F(TServiceFixture, TheEditsAndTheSliderFollowEachOther) {
    const auto edits = [this] {
        return Flash.DT_MaskeditStartDate.Text() + " " + Flash.DT_MaskeditEndDate.Text();
    };
    EXPECT_EQ(edits(), "T:000S:00M:00 T:146S:20M:16");
    Flash.DayTracker.SetUpperPosition(46);
    EXPECT_EQ(edits(), "T:000S:00M:00 T:001S:00M:32");

    struct TCase {
        std::string Typed;
        int Position;
    };
    for (const auto& [typed, position] : std::vector<TCase>{{"T:146S:00M:00", 6570},
                                                            {"T:5S:00M:00", 225},
                                                            {"T:___S:02M:__", 3},
                                                            {"T:000S:00M:31", 0},
                                                            {"T:999S:99M:99", 6608},
                                                            {"nothing", 0}}) {
        Flash.DT_MaskeditEndDate.SetText(typed);
        Flash.DT_MaskeditEndDate.OnExit();
        EXPECT_EQ(Flash.DayTracker.UpperPosition(), position) << typed;
    }
    // A thumb takes the other one along.
    Flash.DT_MaskeditStartDate.SetText("T:002S:00M:00");
    Flash.DT_MaskeditStartDate.OnExit();
    EXPECT_EQ(edits(), "T:002S:00M:00 T:002S:00M:00");

    TNabtodriverTexts texts;
    texts.adjustdaysheader = "Days";
    Flash.ApplyTexts(texts);
    int focus = 0;
    const auto focused = Flash.DT_GetData.FocusRequested.Connect([&focus] { ++focus; });
    for (const auto& [typed, position] :
         std::vector<TCase>{{"200", 6570}, {"1 4", 630}, {"-5", 0}, {"99999999999", 0}, {"3 days", 135}}) {
        Dialogs.ExpectInput("Days", typed);
        Flash.DT_MaskeditEndDate.OnClick();
        EXPECT_EQ(Dialogs.LastInputText, "0");
        EXPECT_EQ(Flash.DayTracker.UpperPosition(), position) << typed;
    }
    for (const auto& answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
        Dialogs.ExpectInput("Days", answer);
        Flash.DT_MaskeditStartDate.OnClick();
    }
    EXPECT_EQ(focus, 5);
    EXPECT_EQ(Flash.DayTracker.UpperPosition(), 135);
}

TEST_F(TServiceFixture, TheCountersSetTheSlider) {
    struct TCase {
        std::string Name;
        TBytes Answer;
        int Upper, Block;
    };
    Flash.CurrentLogBlock = 7;
    for (const auto& [name, answer, upper, block] :
         std::vector<TCase>{{"used", {0x01, 0x02, 0x00, 0x64}, 100, 258},
                            {"full", {0x19, 0xCF, 0x19, 0xD0}, 6608, 6607},
                            {"beyond the ring", {0xFF, 0xFF, 0xFF, 0xFF}, 6608, 65535},
                            {"empty", {0, 0, 0, 0}, 0, 0}}) {
        Library.Chunks = {answer};
        Flash.ButFlashDatalogClick();
        EXPECT_TRUE(Flash.PanelFDDatalog.Visible());
        EXPECT_EQ(std::pair(Flash.DayTracker.UpperPosition(), Flash.CurrentLogBlock), std::pair(upper, block))
            << name;
        Flash.ButFlashDatalogClick();
        EXPECT_FALSE(Flash.PanelFDDatalog.Visible());
    }
    EXPECT_EQ(Memo().back(), "FLASHDATALOG_COUNT2 0");
    EXPECT_THAT(Calls(),
                IsSupersetOf({"eepReadRaw.json?json={\"request\":{\"address\":\"256\",\"length\":\"4\"}}"}));

    Flash.DayTracker.SetUpperPosition(50);
    Status = 1; // unreadable: nothing is said
    Flash.ButFlashDatalogClick();
    EXPECT_TRUE(Flash.PanelFDDatalog.Visible());
    EXPECT_EQ(Flash.DayTracker.UpperPosition(), 50);
    Flash.ButFlashDatalogClick();
    Counters = 0;
    Flash.MischStrings.errorlogcounter = "no flash datalog";
    Dialogs.ExpectMessage("no flash datalog");
    Flash.ButFlashDatalogClick();
    EXPECT_FALSE(Flash.PanelFDDatalog.Visible());
}

TEST_F(TServiceFixture, ADownloadGathersItsSegmentsInOneFile) {
    Flash.CurrentLogBlock = 1;
    Flash.DayTracker.SetUpperPosition(2); // blocks 6607 and 0
    Flash.QuestionDatalog = "Show?";
    Flash.PanelFDDatalog.SetVisible(true);
    TBytes first = Record(1);
    const TBytes next = Record(2);
    first.insert(first.end(), next.begin(), next.end());
    first.resize(4096, 0xFF);
    TBytes second(4096);
    std::ranges::copy(Record(3), second.begin());
    Library.Chunks = {{first.begin(), first.begin() + 100}, {first.begin() + 100, first.end()}, second};
    Dialogs.ExpectMessage("Show?", EModalResult::Yes);
    bool locked = false;
    Use.AddControls({&Flash.DT_GetData});
    OnRead = [&] {
        locked = !Flash.DT_GetData.Enabled();
        Flash.DownloadFlashLog(); // asked for a second time below the first
    };
    Flash.DT_GetData.Click();
    EXPECT_TRUE(locked && Flash.DT_GetData.Enabled());
    EXPECT_THAT(
        Calls(),
        ElementsAre("flashRead.json?json={\"request\":{\"address\":\"30470144\",\"length\":\"4096\"}}",
                    "nabtoStreamOpen", "nabtoStreamClose",
                    "flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"4096\"}}",
                    "nabtoStreamOpen", "nabtoStreamClose"));
    const std::vector<std::string> segment{"Preparing Stream...", "Preperation Success", "Starting Stream...",
                                           "Stream Started",      "Reading Stream...",   "Done Reading"};
    std::vector<std::string> lines{"-----------------FC count Entry--------------------------",
                                   "Slider L: 0 -> T:000S:00M:00",
                                   "Slider H: 2 -> T:000S:01M:04",
                                   "CurrentLogBlock: 1",
                                   "AbsolutStartBlock: 6607",
                                   "AbsolutSlutBlock: 1",
                                   "BlockNumberStart1: 6607",
                                   "BlockNumberLength1: 1",
                                   "BlockNumberStart2: 0",
                                   "BlockNumberLength2: 1",
                                   "BlockNumberStart3: 0",
                                   "BlockNumberLength3: 0",
                                   "-----------------Adress----------------------------------",
                                   "BlockAdrStart1: 30470144",
                                   "BlockAdrLength1: 4096",
                                   "BlockAdrStart2: 131072",
                                   "BlockAdrLength2: 4096",
                                   "BlockAdrStart3: 131072",
                                   "BlockAdrLength3: 0",
                                   "-----------------End-------------------------------------"};
    for (int i = 0; i < 2; ++i)
        lines.insert(lines.end(), segment.begin(), segment.end());
    EXPECT_THAT(Memo(), ElementsAreArray(lines));
    EXPECT_EQ(StatusBar.Panels()[2].Text, "");

    const std::string text = FileText(fileName);
    EXPECT_TRUE(text.starts_with(RowText(1, 1) + "\r\n" + RowText(2, 2) + "\r\n3;31-12-2099;23:59:00;-1;"));
    // The second segment begins with the number of the first one's last row.
    EXPECT_NE(text.find("\r\n16;31-12-2099"), std::string::npos);
    EXPECT_NE(text.find("\r\n" + RowText(16, 3) + "\r\n17;00-00-2000;00:00:00;0;"), std::string::npos);
    EXPECT_TRUE(text.ends_with("\r\n" + header));
    EXPECT_EQ(std::ranges::count(text, '\n'), 33);
    EXPECT_EQ(Flash.PathLastSavedFDFile.string(), "/app/log/userlog//" + fileName);
    EXPECT_THAT(Events,
                ElementsAre("StopRunningLog", "show /app/profile/p_Flash.pls /app/log/userlog//" + fileName));
    EXPECT_FALSE(Flash.PanelFDDatalog.Visible());
}

// Reads of any part of the flash end in a file too.
class TReadFlash : public TServiceFixture {
  protected:
    TReadFlash() {
        Flash.QuestionDatalog = "Show?";
        Library.Chunks = {Record(5)};
    }
    std::string Read(const std::string& length) {
        Tools.editReadLength.SetText(length);
        Tools.BtnReadFlash.OnClick();
        return FileText(fileName);
    }
};

TEST_F(TReadFlash, TakesWholeRecordsAndOffersWhatIsThere) {
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Library.Chunks.back().push_back(0); // a remainder is dropped
    EXPECT_EQ(Read("257"), RowText(1, 5) + "\r\n" + header);
    EXPECT_THAT(Calls(),
                ElementsAre("flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"257\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    Tools.editReadAddress.SetText("all");
    Library.Chunks = {{1, 2, 3}};
    Profile.clear();
    Dialogs.ExpectMessage("Show?", EModalResult::Yes); // of the same minute, and nothing to show it with
    Read("3");
    EXPECT_EQ(FileText("FDlog_123456789012_02-03-20260800-2.csv"), header);
    for (const char* length : {"0", "-4096", "many"})
        Read(length);
    EXPECT_THAT(Calls(),
                ElementsAre("flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"3\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    EXPECT_THAT(Events, ElementsAre("StopRunningLog", "StopRunningLog"));
}

TEST_F(TReadFlash, ARefusedReadLeavesItsLine) {
    Status = 4;
    EXPECT_EQ(Read("256"), "none");
    EXPECT_THAT(Memo(), ElementsAre("Preparing Stream...", "Stream preperation error: 4"));
    Status = 0;
    Library.Results["nabtoStreamOpen"] = {3};
    Library.Results["nabtoStreamClose"] = {2};
    Dialogs.ExpectMessage("status 3");
    Dialogs.ExpectMessage("status 2");
    EXPECT_EQ(Read("256"), "none");
    EXPECT_EQ(Memo().back(), "Starting Stream...");
    Library.Results["nabtoStreamReadIntoBuf"] = {3};
    Library.Results["nabtoStreamClose"] = {2, 2};
    for (const char* text : {"status 2", "status 3", "status 2"})
        Dialogs.ExpectMessage(text);
    EXPECT_EQ(Read("256"), "none");
    EXPECT_EQ(Memo().back(), "Done Reading");
}

TEST_F(TReadFlash, AShortReadCountsWithZerosForTheRest) {
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    EXPECT_TRUE(Read("512").starts_with(RowText(1, 5) + "\r\n2;00-00-2000;00:00:00;0;"));
}

TEST_F(TReadFlash, ALaterSegmentGoesOnAfterARefusedOne) {
    Flash.CurrentLogBlock = 1;
    Flash.DayTracker.SetUpperPosition(2);
    Library.Chunks = {TBytes(4096)};
    Status = 9;
    OnQuery = [this, asked = 0]() mutable {
        Status = ++asked == 1 ? 9 : 0;
    };
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Flash.DownloadFlashLog();
    EXPECT_THAT(Memo(), testing::Contains("Stream preperation error: 9"));
    EXPECT_TRUE(FileText(fileName).starts_with("0;00-00-2000;"));

    // The last one decides about the file.
    Library.Chunks = {TBytes(4096)};
    OnQuery = [this, asked = 0]() mutable {
        Status = ++asked == 2 ? 9 : 0;
    };
    Flash.DownloadFlashLog();
    EXPECT_EQ(Files.List("/app/log/userlog", "*").size(), 1U);
}

TEST_F(TReadFlash, AFileThatCannotBeWrittenIsSavedElsewhere) {
    const std::string full = "Cannot write /app/log/userlog/" + fileName + ": No space left on device";
    Files.Room = 10;
    Dialogs.ExpectMessage(full);
    Dialogs.ExpectSaveFile("Flash Datalog", std::nullopt);
    EXPECT_EQ(Read("256"), "none");

    Files.Room = static_cast<std::size_t>(-1);
    Files.Unwritable.insert("/app/log");
    Library.Chunks = {Record(6)};
    Dialogs.ExpectMessage("Cannot make directory /app/log/userlog: Permission denied");
    Dialogs.ExpectSaveFile("Flash Datalog", "/usb/mine.csv");
    Dialogs.ExpectMessage("Show?", EModalResult::Yes);
    Read("256");
    EXPECT_EQ(Files.Read("/usb/mine.csv"), RowText(1, 6) + "\r\n" + header);
    EXPECT_THAT(Events, IsSupersetOf({"show /app/profile/p_Flash.pls /usb/mine.csv"}));
}

TEST_F(TReadFlash, EndsWithTheProgramOrByTheUser) {
    Library.Chunks = {TBytes(100), Record(5)};
    Flash.CurrentLogBlock = 1;
    Flash.DayTracker.SetUpperPosition(2);
    Dialogs.ExpectMessage("The flash is still being read. Stop reading?", EModalResult::No);
    Dialogs.ExpectMessage("The flash is still being read. Stop reading?", EModalResult::Yes);
    OnRead = [this] {
        OnRead = nullptr;
        EXPECT_FALSE(Flash.MayClose());
        EXPECT_TRUE(Flash.MayClose());
    };
    Flash.DownloadFlashLog();
    EXPECT_TRUE(Flash.MayClose());
    EXPECT_FALSE(Flash.Stopped());
    // The stream is closed, and no other segment asked for.
    EXPECT_THAT(Calls(), ElementsAre(testing::_, "nabtoStreamOpen", "nabtoStreamClose"));

    for (const bool duringQuery : {true, false}) {
        Open = true;
        (duringQuery ? OnQuery : OnRead) = [this] {
            Open = false;
        };
        Flash.DownloadFlashLog();
        EXPECT_TRUE(Flash.MayClose());
        EXPECT_EQ(Calls().size(), duringQuery ? 1U : 3U);
        OnQuery = nullptr;
    }
    EXPECT_TRUE(Files.List("/app/log/userlog", "*").empty());
}

} // namespace

} // namespace tidewell::test

#include "ServiceFixture.h"
#include "core/LanguageTexts.h"

#include <array>
#include <cstdint>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
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

std::string RowText(int firstValue) {
    std::string text = "1;05-03-2024;07:30:00;" + std::to_string(firstValue) + ";-3;";
    for (int value = 2; value < 126; ++value)
        text += std::to_string(value) + ";";
    return text;
}

const std::string header = ";[HeaderStart]x[HeaderEnd]\r\n";
const std::string flashFile = "FDlog_123456789012_02-03-20260800.csv";

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

    Flash.MischStrings.adjustdaysheader = "Days";
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
        return FileText(flashFile);
    }
};

TEST_F(TReadFlash, TakesWholeRecordsAndOffersWhatIsThere) {
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Library.Chunks.back().push_back(0); // a remainder is dropped
    EXPECT_EQ(Read("257"), RowText(5) + "\r\n" + header);
    EXPECT_THAT(Calls(),
                ElementsAre("flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"257\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    Tools.editReadAddress.SetText("all");
    Library.Chunks = {{1, 2, 3}};
    World.Profile.FlashPage.FlashLogProfile.clear();
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

TEST_F(TReadFlash, HasTheDeviceForItself) {
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Use.AddControls({&Tools.BtnReadFlash});
    bool locked = false;
    OnRead = [&] {
        locked = !Tools.BtnReadFlash.Enabled();
        Flash.DownloadFlashLog();
        Flash.ButFlashDatalogClick();
        Tools.BtnReadFlash.OnClick();
        Tools.BtnWriteFlash.OnClick();
        Tools.Button1.OnClick();
        Tools.ExtendedSystemVersion.OnClick();
    };
    EXPECT_EQ(Read("256"), RowText(5) + "\r\n" + header);
    EXPECT_TRUE(locked && Tools.BtnReadFlash.Enabled());
    EXPECT_FALSE(Flash.PanelFDDatalog.Visible());
    EXPECT_THAT(Calls(), ElementsAre(testing::_, "nabtoStreamOpen", "nabtoStreamClose"));
}

TEST_F(TReadFlash, AShortReadCountsWithZerosForTheRest) {
    Dialogs.ExpectMessage("Stream Read, Timeout :(");
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    EXPECT_TRUE(Read("512").starts_with(RowText(5) + "\r\n2;00-00-2000;00:00:00;0;"));
}

TEST_F(TReadFlash, AFileThatCannotBeWrittenIsSavedElsewhere) {
    const std::string full = "Cannot write /app/log/userlog/" + flashFile + ": No space left on device";
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
    EXPECT_EQ(Files.Read("/usb/mine.csv"), RowText(6) + "\r\n" + header);
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
        (duringQuery ? OnQuery : OnRead) = [this] { Open = false; };
        Flash.DownloadFlashLog();
        EXPECT_TRUE(Flash.MayClose());
        EXPECT_EQ(Calls().size(), duringQuery ? 1U : 3U);
        OnQuery = nullptr;
    }
    EXPECT_TRUE(Files.List("/app/log/userlog", "*").empty());
}

} // namespace

} // namespace tidewell::test

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::StartsWith;

using TLines = std::vector<std::string>;

// What a technician reads from the simulated controller, through the whole program. The controller writes
// block 1 of its flash log, so that a range of two blocks goes back across the end of the ring.
class TServiceTools : public TProgramFixture {
  protected:
    TServiceTools() {
        Edit(Simulation, "LogBlock=1000", "LogBlock=1");
        Fresh = Files.Content[Simulation];
    }
    void StartIdle() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Log.clear();
    }
    // From now on the controller does what the test says.
    void SetController(const std::string& faults, const std::string& service = "LogBlock=1") {
        Files.Content[Simulation] = Fresh;
        Edit(Simulation, "LogBlock=1", service);
        Files.Content[Simulation] += "\n[Faults aria1]\n" + faults + "\n";
        Time.Advance(1100);
    }
    void ExpectBoxes(const TLines& texts) {
        for (const std::string& text : texts)
            Dialogs.ExpectMessage(text, EModalResult::No);
    }
    TFlashDatalog& Flash() { return Program->NabtoDevice.FlashDatalog; }
    TFlashDatalog& ShownFlash() {
        if (!Flash().PanelFDDatalog.Visible())
            Flash().ButFlashDatalog.Click();
        return Flash();
    }
    const TLines& Memo() { return Program->NabtoDevice.memoDebug.Lines(); }
    std::vector<std::string> Saved(const std::string& mask) const {
        return Files.List("/t/log/userlog", mask);
    }
    // Of the only such file.
    std::string Text(const std::string& mask) const {
        const auto names = Saved(mask);
        return names.size() == 1 ? Files.Read("/t/log/userlog/" + names[0])
                                 : std::to_string(names.size()) + " files";
    }
    TLines Lines(const std::string& mask) const { return SplitLines(Text(mask)); }
    void RemoveFiles(const std::string& mask) {
        for (const auto& name : Saved(mask))
            Files.Remove("/t/log/userlog/" + name);
    }
    // What went to the library and was shown, without the reads of streams.
    TLines Exchanges() {
        TLines lines;
        for (std::string& line : std::exchange(Log, {}))
            if (line != "nabtoFree" && !line.starts_with("nabtoStreamReadIntoBuf"))
                lines.push_back(std::move(line));
        return lines;
    }
    std::size_t Count(const std::string& call) const {
        return static_cast<std::size_t>(std::ranges::count_if(
            Log, [&call](const std::string& line) { return line.find(call) != std::string::npos; }));
    }
    const std::string ShowIt = Language("Nabtodriver", "questiondatalog");
    const std::string NoStream = "The stream is not valid";
    const std::string TimeOut = "Stream Read, Timeout :(";
    const TLines Broken{NoStream, "The stream was closed", NoStream}; // boxes when a stream ends too early

  private:
    std::string Fresh;
};

// The same with key Service/Strict.
class TStrictServiceTools : public TServiceTools {
  protected:
    TStrictServiceTools() { Files.Content[SystemFile] += "\n[Service]\nStrict=true\n"; }
};

TEST_F(TServiceTools, TheFlashLogIsDownloadedAndShown) {
    constexpr std::size_t rows = 32;
    StartIdle();
    ASSERT_TRUE(Main().FlasDatalog1.Visible());
    Main().FlasDatalog1.Click();
    EXPECT_TRUE(Program->NabtoDevice.Visible() && Flash().PanelFDDatalog.Visible());
    EXPECT_THAT(Memo(), testing::IsSupersetOf({"FLASHDATALOG_COUNT1 1", "FLASHDATALOG_COUNT2 6607"}));
    EXPECT_EQ(Flash().DT_MaskeditEndDate.Text(), "T:146S:19M:44");
    Dialogs.ExpectInput(Language("Nabtodriver", "adjustdaysheader"), "1 day");
    Flash().DT_MaskeditEndDate.OnClick();
    EXPECT_EQ(Flash().DT_MaskeditEndDate.Text(), "T:001S:00M:00");
    Flash().DT_MaskeditEndDate.SetText("T:000S:01M:10");
    Flash().DT_MaskeditEndDate.OnExit();
    EXPECT_EQ(Flash().DayTracker.UpperPosition(), 2);

    Dialogs.ExpectMessage(ShowIt, EModalResult::Yes);
    Flash().DT_GetData.Click();
    std::string told;
    for (const TLines& lines : {Exchanges(), TLines{"memoDebug:"}, Memo()})
        for (const std::string& line : lines)
            told += line + "\n";
    ExpectGolden("flash_datalog/exchanges.txt", told);
    ExpectGolden("flash_datalog/saved.csv", Text("FDlog_410000000001_02-03-20260800.csv"));

    const auto lines = Lines("FDlog_*");
    ASSERT_EQ(lines.size(), rows + 1);
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), rows);
    for (std::size_t row = 0; row < rows; ++row) {
        constexpr std::size_t outdoorAir = 79; // with one decimal
        const int value = ToIntegerOr(GetRowField(lines[row], outdoorAir), 0);
        EXPECT_EQ(Program->GraphPage.DataLogDataValues.At(0, row), value / 10.0) << row;
    }
    EXPECT_TRUE(Main().TheTab.IsActive(Main().TabGraph));
    EXPECT_FALSE(Main().TabSetpoint.Visible() || Main().WindowSetpoint1.Enabled());
    EXPECT_FALSE(Program->Profile.ProfileLoaded || Program->NabtoDevice.Visible());
    EXPECT_FALSE(Flash().PanelFDDatalog.Visible() || Main().FileProgressBar.Visible());
    EXPECT_EQ(Program->NabtoDevice.StatusBar.Panels()[2].Text, "");
    const std::string companion = "/t/profile/Aria450_english_Flash.pls";
    EXPECT_EQ(Main().Caption(), companion);

    // The reader of datalogs shows the same, but for the last row.
    const auto shown = Samples(rows - 1);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageStopLog"), EModalResult::Ok);
    Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), companion);
    Main().OpenProfile2.Click();
    EXPECT_TRUE(Main().TabSetpoint.Visible() && Main().WindowSetpoint1.Enabled());
    Dialogs.ExpectOpenFiles(Language("HeadAppl", "DialogOpenDatalogFileCaption"),
                            {"/t/log/userlog/" + Saved("FDlog_*")[0]});
    Main().OpenDatalogfile1.Click();
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), rows - 1);
    EXPECT_TRUE(Samples(rows - 1) == shown);
    Close();
}

// 146 days in three reads, over the border of both areas and the end of the ring: a row for every second
// minute up to the block being written.
TEST_F(TServiceTools, TheWholeRingComesInItsOrder) {
    using namespace std::chrono;
    StartIdle();
    SetController("", "LogBlock=1000");
    Main().FlasDatalog1.Click();
    Dialogs.ExpectMessage(ShowIt, EModalResult::Yes);
    Flash().DT_GetData.Click();
    const auto lines = Lines("FDlog_*");
    constexpr std::size_t rows = 6607 * 16;
    ASSERT_EQ(lines.size(), rows + 1);
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), rows);
    sys_time<minutes> time = sys_days(March / 2 / 2026) + 8h;
    std::size_t number = rows - 1; // the second read begins with the last number once more
    for (std::size_t row = rows; row-- > 0; --number) {
        time -= 2min;
        const auto day = floor<days>(time);
        const year_month_day date(day);
        const hh_mm_ss clock(time - day);
        std::string head(40, '\0');
        head.resize(static_cast<std::size_t>(std::snprintf(
            head.data(), head.size(), "%zu;%02u-%02u-%d;%02ld:%02ld:00;", number, unsigned{date.day()},
            unsigned{date.month()}, int{date.year()}, clock.hours().count(), clock.minutes().count())));
        ASSERT_THAT(lines[row], StartsWith(head));
        if (row == 6320128 / 256)
            ++number;
    }
    EXPECT_EQ(number, 0U);
    Close();
}

TEST_F(TServiceTools, ACompanionProfileThatIsBadOrMissing) {
    const std::filesystem::path companion = "/t/profile/Aria450_english_Flash.pls";
    const auto download = [this](const TLines& boxes) {
        Main().FlasDatalog1.Click();
        Flash().DayTracker.SetUpperPosition(1);
        Dialogs.ExpectMessage(ShowIt, EModalResult::Yes);
        ExpectBoxes(boxes);
        Flash().DT_GetData.Click();
        EXPECT_TRUE(Dialogs.AllAnswered());
    };
    StartIdle();
    const std::string whole = Files.Content.at(companion);
    Files.Remove(companion); // nothing is shown
    download({});
    EXPECT_EQ(Main().Caption(), Profile);
    EXPECT_TRUE(Program->Profile.ProfileLoaded && Main().TabSetpoint.Visible() &&
                Program->NabtoDevice.Visible());
    EXPECT_FALSE(Flash().PanelFDDatalog.Visible());
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), 0U);

    Files.Put(companion, whole);
    Edit(companion, "graph 0=true", "graph 0=perhaps"); // told, and the channel is visible
    download({companion.string() + ": [VisibleGraph] graph 0: 'perhaps' is not a valid boolean value"});
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), 16U);
    EXPECT_FALSE(Program->Profile.ProfileLoaded);

    Files.Put(companion, ""); // no curves
    download({});
    EXPECT_EQ(Main().Caption(), companion);
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), 0U);
    EXPECT_EQ(Program->GraphPage.GraphDataLabelsTimeText.Count(), 16U);
    EXPECT_FALSE(Main().TabSetpoint.Visible());
    Close();
}

TEST_F(TServiceTools, ALogAfterTheFlashLogAsksForAProfile) {
    StartIdle();
    Main().FlasDatalog1.Click();
    Flash().DayTracker.SetUpperPosition(1);
    Dialogs.ExpectMessage(ShowIt, EModalResult::Yes);
    Flash().DT_GetData.Click();
    const auto profile = Files.Content.at("/t/profile/Aria450_english_Flash.pls");
    Dialogs.ExpectMessage("Profile NOT loaded...");
    Dialogs.ExpectForm("SetupForm", {});
    Main().StartLog1.Click();
    EXPECT_TRUE(Main().TabSetpoint.Visible() && Main().WindowSetpoint1.Enabled());
    Close();
    EXPECT_EQ(Files.Content.at("/t/profile/Aria450_english_Flash.pls"), profile);
}

TEST_F(TServiceTools, ADownloadThatFailsTellsWhere) {
    struct TCase {
        std::string Faults;
        TLines Boxes;
        TLines Memo; // behind the report; "*" for a segment that was read
        std::string FirstRow;
        std::size_t Lines; // of the file; 0: none
    };
    const std::string first = "1;02-03-2026;06:56:00;";  // of block 6607
    const std::string second = "0;02-03-2026;07:28:00;"; // of block 0, behind nothing
    const TLines segment{"Preparing Stream...", "Preperation Success", "Starting Stream...",
                         "Stream Started",      "Reading Stream...",   "Done Reading"};
    const auto refused = [](int status) { return "Stream preperation error: " + std::to_string(status); };
    StartIdle();
    Main().FlasDatalog1.Click();
    for (const auto& [faults, boxes, memo, firstRow, lines] : std::vector<TCase>{
             {"SlowStream=3s; query=stream", {ShowIt}, {"*", "*"}, first, 33}, // no time-out of what comes
             {"Refuse=3; query=flashRead.json; times=1", {ShowIt}, {segment[0], refused(3), "*"}, second, 17},
             {"Refuse=3; query=flashRead.json; skip=1", {}, {"*", segment[0], refused(3)}, "", 0},
             {"Error=busy; query=flashRead.json; skip=1", {}, {"*", segment[0], refused(1)}, "", 0},
             {"Garbage={}; query=flashRead.json; skip=1", {}, {"*", segment[0], refused(-1)}, "", 0},
             {"NoAnswer=on; query=flashRead.json; skip=1", {}, {"*", segment[0], refused(1)}, "", 0},
             // Gone when the second stream is to be opened, behind the first one's opening and four reads.
             {"NoAnswer=on; query=stream; skip=5",
              {"No connection to the device", NoStream},
              {"*", segment[0], segment[1], segment[2]},
              "",
              0},
             {"BrokenStream=1000; query=stream; skip=4", Broken, {"*", "*"}, "", 0},
             {"BrokenStream=1000; query=stream; times=2",
              {Broken[0], Broken[1], Broken[2], ShowIt},
              {"*", "*"},
              second,
              17},
             {"ShortRead=1; query=flashRead.json; skip=1", Broken, {"*", "*"}, "", 0},
             {"StalledStream=600; query=stream; skip=4", {TimeOut, ShowIt}, {"*", "*"}, first, 33},
         }) {
        SCOPED_TRACE(faults);
        SetController("");
        ShownFlash().DayTracker.SetUpperPosition(2);
        SetController(faults);
        ExpectBoxes(boxes);
        Flash().DT_GetData.Click();
        EXPECT_TRUE(Dialogs.AllAnswered());
        TLines expected;
        for (const std::string& line : memo)
            if (line == "*")
                expected.insert(expected.end(), segment.begin(), segment.end());
            else
                expected.push_back(line);
        const auto report =
            std::ranges::find_if(Memo(), [](auto& line) { return line.starts_with("-----------------End"); });
        ASSERT_NE(report, Memo().end());
        EXPECT_THAT(TLines(report + 1, Memo().end()), ElementsAreArray(expected));
        EXPECT_EQ(Saved("FDlog_*").size(), lines == 0 ? 0U : 1U);
        if (lines != 0) {
            EXPECT_THAT(Text("FDlog_*"), StartsWith(firstRow));
            EXPECT_EQ(Lines("FDlog_*").size(), lines);
        }
        EXPECT_EQ(Flash().PanelFDDatalog.Visible(), lines == 0);
        EXPECT_EQ(Nabto.OpenStreams(), 0U);
        RemoveFiles("FDlog_*");
    }
    Close();
}

TEST_F(TStrictServiceTools, WhatCameOfTheFlashLogIsSavedAndTheRestTold) {
    struct TCase {
        std::string Faults;
        TLines Boxes; // before the last one
        std::string Missing;
        std::string FirstRow;
        std::size_t Rows; // 0: no file
    };
    const std::string first = "1;02-03-2026;06:56:00;";  // of block 6607
    const std::string second = "0;02-03-2026;07:28:00;"; // of block 0, behind nothing
    const std::string part = "FDlog_410000000001_02-03-20260800_part.csv";
    const auto missing = [](int blocks, const std::string& lines) {
        return "Only " + std::to_string(blocks) + " of 2 blocks were read.\n" + lines;
    };
    StartIdle();
    Main().FlasDatalog1.Click();
    for (const auto& [faults, boxes, lines, firstRow, rows] : std::vector<TCase>{
             {"Refuse=3; query=flashRead.json; block=6607",
              {},
              missing(1, "Blocks 6607 to 6607: the device refused (status 3)"),
              second,
              16},
             {"Error=busy; query=flashRead.json; block=0",
              {},
              missing(1, "Blocks 0 to 0: the device refused (busy)"),
              first,
              16},
             {"LostAnswer=on; query=flashRead.json",
              {},
              missing(0, "Blocks 6607 to 6607: the device did not answer\n"
                         "Blocks 0 to 0: the device did not answer"),
              "",
              0},
             {"NoAnswer=on; query=stream; skip=5",
              {"No connection to the device", NoStream},
              missing(1, "Blocks 0 to 0: no stream could be opened"),
              first,
              16},
             {"BrokenStream=1000; query=stream; skip=4", Broken,
              missing(1, "Blocks 0 to 0: the stream broke off"), first, 19},
             {"StalledStream=600; query=stream; times=21", // until the first segment is given up
              {TimeOut},
              missing(1, "Blocks 6607 to 6607: nothing more came in time"),
              first,
              18},
             {"", {}, "", first, 32},
         }) {
        SCOPED_TRACE(faults);
        SetController("");
        ShownFlash().DayTracker.SetUpperPosition(2);
        SetController(faults);
        ExpectBoxes(boxes);
        ExpectBoxes({lines.empty() ? ShowIt
                     : rows == 0   ? lines
                                   : lines + "\nWhat came is saved in " + part + ".\nShow it on the graph?"});
        Flash().DT_GetData.Click();
        EXPECT_TRUE(Dialogs.AllAnswered());
        EXPECT_EQ(Saved("FDlog_*").size(), rows == 0 ? 0U : 1U);
        EXPECT_EQ(Saved("*_part.csv").size(), rows == 0 || rows == 32 ? 0U : 1U);
        if (rows != 0) {
            EXPECT_THAT(Text("FDlog_*"), StartsWith(firstRow));
            EXPECT_EQ(Lines("FDlog_*").size(), rows + 1);
            EXPECT_EQ(Text("FDlog_*").find("00-00-2000"), std::string::npos);
        }
        for (const auto line : SplitStrictly(lines, '\n')) {
            EXPECT_THAT(Memo(), testing::Contains(line));
            EXPECT_EQ(Main().MemoEventLog.Lines().back().starts_with("Flash datalog: "), true);
        }
        EXPECT_EQ(Nabto.OpenStreams(), 0U);
        RemoveFiles("FDlog_*");
    }
    // Nothing is told to be saved that is not.
    ShownFlash().DayTracker.SetUpperPosition(2);
    Files.Unwritable.insert("/t/log/userlog");
    ExpectBoxes({"Cannot make directory /t/log/userlog: Permission denied"});
    Dialogs.ExpectSaveFile(Language("Nabtodriver", "ButFlashdatalog"), std::nullopt);
    ExpectBoxes({"The flash datalog was read, but not saved."});
    Flash().DT_GetData.Click();
    // A range behind counters that were not read is none.
    Flash().ButFlashDatalog.Click();
    SetController("StalledStream=2; query=stream");
    ExpectBoxes({TimeOut});
    Flash().ButFlashDatalog.Click();
    EXPECT_EQ(Flash().CurrentLogBlock, 1);
    Log.clear();
    Flash().DT_GetData.Click();
    EXPECT_EQ(Flash().DT_LabelNotice.Caption(),
              "The log's counters were not read, so the range is not known.");
    EXPECT_TRUE(Flash().DT_LabelNotice.Visible() && Log.empty());
    Close();
}

TEST_F(TStrictServiceTools, WhatCameOfTheErrorLogAndTheEepromIsSavedAndTheRestTold) {
    const std::string refused = "The error log was not read: the device refused (status 2).";
    StartIdle();
    TNotice& notice = Program->NabtoDevice.ErrorLogNotice;
    Main().but_errorlog.Click();
    const TLines whole = Lines("errorlog *");
    EXPECT_FALSE(notice.Visible());
    RemoveFiles("errorlog *");
    SetController("StalledStream=301; query=stream");
    ExpectBoxes({TimeOut});
    Main().but_errorlog.Click();
    const std::string part = "Only 50 of 100 events of the error log were read: nothing more came in time.";
    EXPECT_EQ(notice.Text.Caption(), part);
    TLines lines = Lines("errorlog *");
    ASSERT_EQ(lines.size(), 52U);
    EXPECT_EQ(lines.back(), part);
    EXPECT_TRUE(std::equal(lines.begin() + 1, lines.end() - 1, whole.begin() + 1));
    lines.emplace_back("File saved in userlog directory");
    EXPECT_EQ(Program->ErrorLog.Memo.Lines(), lines);
    SetController("Refuse=2; query=eepReadRaw.json");
    Main().but_errorlog.Click();
    EXPECT_EQ(notice.Text.Caption(), refused);
    Program->DeviceActions.Nabtodebug1Click();
    ExpectBoxes({refused});
    Program->NabtoDevice.ButErorlog.Click();
    EXPECT_EQ(Saved("errorlog *").size(), 1U);

    auto& tools = Program->NabtoDevice.ServiceTools;
    tools.RErrorlogStart.SetText("256");
    tools.RErrorlogLength.SetText("4");
    ExpectBoxes({"Only 0 of 8 bytes were read.\nBytes 256 to 263: the device refused (status 2)"});
    tools.butGetEepromValues.OnClick();
    EXPECT_TRUE(Saved("EElist_*").empty());
    SetController("ShortRead=3; query=eepReadRaw.json");
    ExpectBoxes(Broken);
    ExpectBoxes({"Only 5 of 8 bytes were read.\nBytes 261 to 263: the stream broke off\n"
                 "What came is saved in EElist_410000000001_02-03-20260800_part.csv."});
    tools.butGetEepromValues.OnClick();
    EXPECT_EQ(Text("EElist_*_part.csv"), "EENum- 256;1\r\nEENum- 258;6607\r\n");
    SetController("");
    ExpectBoxes({"done... download"});
    tools.butGetEepromValues.OnClick();
    EXPECT_EQ(Lines("EElist_410000000001_02-03-20260800.csv").size(), 4U);
    Close();
}

TEST_F(TServiceTools, CountersThatAreOddLeaveNothingBroken) {
    struct TCase {
        std::string Service, Faults;
        TLines Boxes;
        int Upper, Block;
        std::string Last; // line of a download of all that the slider covers
    };
    const std::string end = "-----------------End-------------------------------------";
    StartIdle();
    Main().FlasDatalog1.Click();
    Flash().ButFlashDatalog.Click();
    for (const auto& [service, faults, boxes, upper, block, last] : std::vector<TCase>{
             {"LogBlock=0\nLogInUse=0", "", {}, 0, 0, end},
             {"LogBlock=65535", "", {}, 6607, 65535, "Stream preperation error: 1"},
             {"LogBlock=65535\nLogInUse=65535", "", {}, 6608, 65535, "Stream preperation error: 1"},
             // Not read: all stays as it was.
             {"LogBlock=1",
              "Refuse=1; query=eepReadRaw.json",
              {},
              6608,
              65535,
              "Stream preperation error: 1"},
             {"LogBlock=1", "ShortRead=1; query=eepReadRaw.json", Broken, 6608, 65535,
              "Stream preperation error: 1"},
         }) {
        SCOPED_TRACE(service + " " + faults);
        SetController(faults, service);
        ExpectBoxes(boxes);
        Flash().ButFlashDatalog.Click();
        EXPECT_EQ(std::pair(Flash().DayTracker.UpperPosition(), Flash().CurrentLogBlock),
                  std::pair(upper, block));
        EXPECT_TRUE(Flash().PanelFDDatalog.Visible());
        Flash().DT_GetData.Click();
        EXPECT_EQ(Memo().back(), last);
        EXPECT_EQ(Flash().DT_LabelNotice.Visible(), last == end);
        Flash().ButFlashDatalog.Click();
    }
    EXPECT_EQ(Flash().DT_LabelNotice.Caption(), "");
    Program->Profile.FlashPage.DF_FDCountNum = 0;
    ExpectBoxes({Language("Nabtodriver", "errorlogcounter")});
    Flash().ButFlashDatalog.Click();
    EXPECT_FALSE(Flash().PanelFDDatalog.Visible());
    EXPECT_TRUE(Saved("*").empty());
    Close();
}

TEST_F(TServiceTools, TheErrorLogGetsItsPage) {
    StartIdle();
    Program->LiveLog.StartLog(false, true);
    Main().but_errorlog.Click();
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    auto& page = Program->ErrorLog;
    EXPECT_TRUE(Main().TheTab.IsActive(page.TabErrorlog));
    TLines lines = Lines("errorlog 02-03-2026080002.csv");
    ExpectGolden("errorlog.csv", Text("errorlog *"));
    ASSERT_EQ(lines.size(), 101U);
    lines.emplace_back("File saved in userlog directory");
    EXPECT_EQ(page.Memo.Lines(), lines);

    // What cannot be read leaves the page and says what the link says.
    struct TCase {
        std::string Faults;
        TLines Boxes;
        std::string Last, Reason;
    };
    const TNotice& notice = Program->NabtoDevice.ErrorLogNotice;
    EXPECT_FALSE(notice.Visible());
    for (const auto& [faults, boxes, last, reason] : std::vector<TCase>{
             {"Refuse=2; query=eepReadRaw.json", {}, "Read Length: 400", "the device refused (status 2)"},
             {"NoAnswer=on; query=eepReadRaw.json", {}, "Read Length: 400", "the device did not answer"},
             {"NoAnswer=on; query=stream",
              {"No connection to the device"},
              "Starting Stream...",
              "no stream could be opened"},
             {"ShortRead=300; query=eepReadRaw.json", Broken, "Stream is Closed now ",
              "the stream broke off"}}) {
        SCOPED_TRACE(faults);
        SetController(faults);
        ExpectBoxes(boxes);
        Main().but_errorlog.Click();
        EXPECT_EQ(Memo().back(), last);
        EXPECT_EQ(page.Memo.Lines(), lines);
        EXPECT_EQ(notice.Text.Caption(), "The error log was not read: " + reason + ".");
        EXPECT_TRUE(notice.Visible());
    }
    EXPECT_EQ(Saved("errorlog *").size(), 1U);

    // Fewer events, and their raw words.
    SetController("", "LogBlock=1\nErrorEvents=1");
    EXPECT_TRUE(notice.Visible());
    const std::size_t pages = Main().TheTab.Pages.size();
    Program->Configuration.ErrorLog.doIncludeValuesInFile = true;
    Main().but_errorlog.Click();
    EXPECT_EQ(Main().TheTab.Pages.size(), pages);
    EXPECT_FALSE(notice.Visible());
    EXPECT_EQ(Saved("errorlog *").size(), 2U);
    ASSERT_EQ(page.Memo.Lines().size(), 202U);
    EXPECT_THAT(page.Memo.Lines()[1], StartsWith("DataValues for calculation -> MoDy "));
    EXPECT_THAT(page.Memo.Lines()[2], EndsWith("Errornumber 07 OFF"));
    EXPECT_EQ(page.Memo.Lines()[4], "Number2 Time 00:00 Date 00/00 2000 Errornumber 00 OFF");
    Close();
}

TEST_F(TServiceTools, TheOlderErrorLogAsksItsQuestionsUntilTheNewOne) {
    StartIdle();
    const auto questions = Program->ModbusPanel.CycleReadList;
    Main().Errorlog1.Click(); // hidden
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    Program->Profile.ProfileLoaded = false;
    Main().Errorlog1.OnClick();
    EXPECT_FALSE(Program->LiveLog.DatalogOn || Program->ErrorLog.ErrorLogActive);
    Program->Profile.ProfileLoaded = true;
    Program->ErrorLog.ErrorLogActiveCount = 3;
    ExpectBoxes({Language("HeadAppl", "MessageClearGraphData")});
    Main().Errorlog1.OnClick();
    EXPECT_TRUE(Program->LiveLog.DatalogOn && Program->ErrorLog.ErrorLogActive);
    EXPECT_EQ(Program->ErrorLog.ErrorLogActiveCount, 0U);
    auto& devices = Program->ModbusPanel.DeviceList;
    EXPECT_TRUE(devices.GetDevice(0).ReadList.empty());
    EXPECT_THAT(Program->ModbusPanel.CycleReadList,
                ElementsAre("30;3;600;100;List error dates;0", "30;3;700;100;List error times;1"));
    RunUntilRows(2);
    Main().but_errorlog.Click();
    EXPECT_FALSE(Program->LiveLog.DatalogOn || Program->ErrorLog.ErrorLogActive);
    EXPECT_EQ(Program->ModbusPanel.CycleReadList, questions);
    EXPECT_EQ(devices.GetDevice(0).ReadList.size(), 7U);
    Close();
}

TEST_F(TServiceTools, ACloseInTheMiddleEndsTheRead) {
    Start();
    Main().FlasDatalog1.Click();
    Log.clear();
    Time.After(0, [this] {
        Time.After(0, [this] { Main().Close(); }); // the stream is open by then
    });
    Flash().DT_GetData.Click();
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_EQ(Count("nabtoStreamOpen"), Count("nabtoStreamClose"));
    EXPECT_LT(Count("nabtoStreamRead"), 10U);
    EXPECT_TRUE(Saved("FDlog_*").empty());
    Program->Finish();
}

TEST_F(TServiceTools, ThePanelsAreShownByTheirOptions) {
    Arguments.insert(Arguments.end(), {"-debugShowEEPanel", "true", "-debugShowFlashPanel", "true",
                                       "-debugShowExtendedVersionInfo", "true"});
    StartIdle();
    Program->DeviceActions.Nabtodebug1Click();
    auto& tools = Program->NabtoDevice.ServiceTools;
    EXPECT_TRUE(tools.PanelReadEEprom.Visible() && tools.PanelReadFlash.Visible() &&
                tools.ExtendedSystemVersion.Visible());
    EXPECT_FALSE(tools.Button1.Visible() || tools.BtnWriteFlash.Visible());

    struct TEepromCase {
        std::string Start, Length, Saved;
    };
    for (const auto& [start, length, saved] : std::vector<TEepromCase>{
             {"256", "2", "EENum- 256;1\r\nEENum- 258;6607\r\n"},
             {"257", "1", "EENum- 257;281\r\n"}, // 01 19 from the middle of both
             {"4094", "1", "EENum- 4094;65535\r\n"},
             {"4094", "2", ""}, // more than there is: refused
         }) {
        tools.RErrorlogStart.SetText(start);
        tools.RErrorlogLength.SetText(length);
        ExpectBoxes({"done... download"});
        tools.butGetEepromValues.Click();
        EXPECT_EQ(Text("EElist_410000000001_02-03-20260800.csv"), saved);
        RemoveFiles("EElist_*");
    }
    ExpectBoxes({ShowIt});
    tools.editReadLength.SetText("300");
    tools.BtnReadFlash.Click();
    EXPECT_EQ(Lines("FDlog_*").size(), 2U);
    RemoveFiles("FDlog_*");
    // Not one record, and nothing to show: the profile of before stays, with what the user made of it.
    auto& graph = Program->GraphPage.graph;
    const std::size_t channels = graph.Channels.Count();
    graph.Channels[0].SetVisible(false);
    graph.Channels[1].SetColor(TColor{0x123456});
    const auto rows = Program->Profile.GraphValues;
    Dialogs.ExpectMessage(ShowIt, EModalResult::Yes);
    tools.editReadLength.SetText("255");
    EXPECT_THROW(tools.BtnReadFlash.Click(), EListError);
    EXPECT_EQ(Lines("FDlog_*").size(), 1U);
    EXPECT_TRUE(Main().TabSetpoint.Visible() && Program->Profile.ProfileLoaded);
    EXPECT_EQ(std::pair(Main().Caption(), Program->Profile.currentprofilefile.string()),
              std::pair(std::string(Profile), std::string(Profile)));
    EXPECT_EQ(Program->ModbusPanel.GlobalPlsFilePath, Profile);
    EXPECT_EQ(Program->Profile.GraphValues, rows);
    EXPECT_EQ(graph.Channels.Count(), channels);
    EXPECT_FALSE(graph.Channels[0].Visible());
    EXPECT_EQ(graph.Channels[1].Color(), TColor{0x123456});

    Log.clear();
    tools.BtnWriteFlash.OnClick();
    EXPECT_EQ(Program->NabtoDevice.Identity.LblJson.Caption(), "Write Success");
    EXPECT_EQ(Nabto.FindController(Device)->StreamReceived(), std::string("\0\1\2\3\4\5\6\7\10\11", 10));
    tools.Button1.OnClick();
    tools.ExtendedSystemVersion.OnClick();
    const std::string query = "nabtoRpcInvoke nabto://410000000001.hv.example/";
    EXPECT_THAT(Exchanges(),
                ElementsAre(query + R"(flashWrite.json?json={"request":{"address":"0","length":"10"}})",
                            StartsWith("nabtoStreamOpen"), StartsWith("nabtoStreamWrite"), "nabtoStreamClose",
                            query + R"(FlashWriteNostream.json?json={"request":{"nostreamstate":15,)" +
                                R"("blocknumber":0,"list":[]}})",
                            query + R"(SystemIdentify.json?json={"request":{"SystemIdentify":24}})"));
    Close();
}

} // namespace
} // namespace tidewell::test

#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

// What the controller or the link does wrong while the program logs.
class TLinkFaults : public TProgramFixture {
  protected:
    // From now on, as far as the library looks at the file once a second.
    void SetFault(const std::string& row) {
        Files.Content[Simulation] = Fresh + "\n[Faults aria1]\n" + row + "\n";
    }
    void StartLogging() {
        Fresh = Files.Content[Simulation];
        Start();
        RunUntilRows(3);
    }
    std::size_t Rows() { return Program->LogBuffers.DatalogCount; }
    std::string Label() { return Program->NabtoDevice.LblNabto.Caption(); }
    std::string Fresh;
};

TEST_F(TLinkFaults, StopTheRowsAndLoseNone) {
    const char* const faults[] = {
        "Error=Device busy", // refused
        "WrongCount=-1",
        "WrongCount=1",
        "NoAnswer=on",
        "Garbage=<html>no JSON</html>",
        "Error=Device busy; query=datapointReadValue.json",
    };
    StartLogging();
    for (const std::string fault : faults) {
        SCOPED_TRACE(fault);
        SetFault(fault);
        Time.Advance(5000);
        const std::size_t before = Rows();
        Time.Advance(20000);
        EXPECT_EQ(Rows(), before);
        if (fault == "Error=Device busy") {
            EXPECT_EQ(Program->NabtoDevice.LedNabto.TrueColor(), TALed::Red);
            EXPECT_TRUE(Program->NabtoDevice.LedNabto.Value());
        }
        SetFault("");
        Time.Advance(10000);
        EXPECT_GT(Rows(), before + 2);
        EXPECT_EQ(Program->NabtoDevice.LedNabto.TrueColor(), TALed::Green);
    }
    // No row was made of a partial or a wrong cycle: the last column is the blank behind the last value.
    const auto& raw = Program->LogBuffers.DataLogRawData;
    EXPECT_EQ(raw.Columns(), 127u);
    for (std::size_t row = 0; row < Rows(); ++row) {
        EXPECT_EQ(raw.At(0, row), raw.At(0, 0));
        EXPECT_EQ(raw.At(126, row), 0);
    }
    Close();
}

TEST_F(TLinkFaults, SurviveTenMegabytesOfText) {
    StartLogging();
    const std::size_t before = Rows();
    SetFault("Huge=10000000; times=2");
    Time.Advance(20000);
    EXPECT_GT(Rows(), before + 2);
    Close();
}

TEST_F(TLinkFaults, AskTheFirstQuestionAgainAtTheQuestionInterval) {
    StartLogging();
    SetFault("Error=Device busy; query=datapointReadValue.json");
    ASSERT_TRUE(
        Time.AdvanceUntil([this] { return Label() == "ID : 410000000001.hv.example -> Error Com"; }, 10000));
    Libraries.Calls.clear();
    Time.Advance(50);
    ASSERT_EQ(Libraries.Calls.size(), 2u);
    EXPECT_THAT(Libraries.Calls[0], testing::HasSubstr(R"("address":"100","length":"16","obj":"0")"));
    Close();
}

TEST_F(TLinkFaults, EndTheStartWithoutAProfileWhenTheDeviceIsSilent) {
    Files.Content[Simulation] += "\n[Faults aria1]\nNoAnswer=on\n";
    Dialogs.ExpectMessage(Language("TestfileComport", "Erroritemnumberdoesnotmatch"));
    Start();
    EXPECT_FALSE(Program->Profile.ProfileLoaded);
    EXPECT_FALSE(Main().DeviceID.Visible());
    Dialogs.ExpectMessage("Profile NOT loaded...");
    Dialogs.ExpectForm("SetupForm", {});
    Time.Advance(5000);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    Close();
}

TEST_F(TLinkFaults, StopPollingWhenAPartialFileCannotBeWritten) {
    Edit(SystemFile, "DatalogCount=50000", "DatalogCount=4");
    Start();
    Files.Room = 100;
    Dialogs.ExpectMessage(
        "Cannot write /t/log/userlog/datalog02-03-20260800partial.csv: No space left on device");
    Time.Advance(60000);
    EXPECT_EQ(Rows(), 4u); // the fifth row is in the buffers, but not counted
    EXPECT_THAT(FilesBelow("/t/log/userlog"), testing::IsEmpty());
    // The log counts as stopped, and says why.
    const TNotice& notice = Program->LiveLog.LogNotice;
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_EQ(Main().TrafficButton.Caption(), Language("HeadAppl", "TrafficButtonOFF"));
    EXPECT_EQ(notice.Text.Caption(), "The log has stopped: " + Dialogs.Shown.back().Text);
    EXPECT_TRUE(notice.Visible());
    EXPECT_THAT(Main().MemoEventLog.Lines(), testing::Contains(notice.Text.Caption()));
    Files.Room = static_cast<std::size_t>(-1);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::No);
    Main().TrafficButton.Click(); // goes on with the log as it is
    EXPECT_FALSE(notice.Visible());
    RunUntilRows(6);
    EXPECT_EQ(FilesBelow("/t/log/userlog").size(), 1u);
    // Each row bears its own time, and none is left of the step that failed.
    const auto& times = Program->GraphPage.GraphDataLabelsTimeText;
    EXPECT_EQ(times.Count(), Rows());
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), Rows());
    EXPECT_EQ(times.At(Rows() - 1), Time.LongTime(Time.Now()));
    Close();
}

TEST_F(TLinkFaults, SendNoQuestionAfterAClose) {
    StartLogging();
    ASSERT_TRUE(Time.AdvanceUntil([this] { return Label().ends_with("-> Get Data"); }, 10000));
    std::size_t calls = 0;
    Time.After(50, [&] { // due with the question, and so delivered just before it is sent
        EXPECT_FALSE(Program->NabtoDevice.Cycle.timerQuery->Enabled());
        Main().Close();
        calls = Libraries.Calls.size();
    });
    Time.Advance(60000);
    EXPECT_EQ(Libraries.Calls.size(), calls);
    Program->Finish();
}

// The click comes while a question is outstanding; the entry stays open for a minute.
TEST_F(TLinkFaults, LogOnBelowADialog) {
    StartLogging();
    SetFault("Latency=100ms");
    Program->SetpointPage.SetpointTreeView.SetSelected(TTreeView::TSelection{0, 0});
    Program->SetpointPage.SetpointTreeView.OnClick();
    Dialogs.ExpectForm("InputDialog", [this](TForm&) {
        const std::size_t before = Rows();
        Time.Advance(60000);
        EXPECT_GT(Rows(), before + 15);
    });
    Time.Advance(3000);
    ASSERT_TRUE(Time.AdvanceUntil([this] { return Label().ends_with("-> Get Data"); }, 10000));
    Time.After(100, [this] {
        EXPECT_FALSE(Program->NabtoDevice.Cycle.timerQuery->Enabled());
        Program->SetpointPage.SetpointGrid.OnDblClick(1);
    });
    Time.Advance(200);
    const std::size_t before = Rows();
    Time.Advance(30000);
    EXPECT_GT(Rows(), before + 7);
    Close();
}

// The session ends; a new one cannot be opened for a while, or ends at once.
TEST_F(TLinkFaults, EndAtALostSessionUnlessItIsReopened) {
    const std::string simulation = Files.Content[Simulation];
    const std::string system = Files.Content[SystemFile];
    const std::string noNetwork = "EndSessions=on; times=1\nnabtoOpenSession=NABTO_NO_NETWORK; times=4\n";
    struct TCase {
        bool Reopens;
        std::string Faults;
        int Pings;
        const char* NotBack;
    };
    for (const auto& test : {TCase{false, noNetwork, 0, ""}, TCase{true, noNetwork, 1, "There is no network"},
                             TCase{true, "EndSessions=on; times=2\n", 2, "The session is not valid"}}) {
        Files.Content[Simulation] = simulation;
        Files.Content[SystemFile] = system + "[Session]\nReopen=" + (test.Reopens ? "true" : "false") + "\n";
        StartLogging();
        Fresh += "\n[Library]\n" + test.Faults;
        const std::ptrdiff_t pings = QueryCount("ping.json");
        SetFault("");
        Time.Advance(5000);
        const std::size_t before = Rows();
        Time.Advance(40000);
        EXPECT_EQ(Rows() > before + 5, test.Reopens);
        EXPECT_EQ(QueryCount("ping.json"), pings + test.Pings);
        std::vector<std::string> told = Main().MemoEventLog.Lines();
        std::erase_if(told, [](const std::string& line) { return !line.starts_with("The session"); });
        if (test.Reopens)
            EXPECT_THAT(told, testing::ElementsAre(
                                  "The session has ended and is opened anew: The session is not valid",
                                  std::string("The session cannot be opened: ") + test.NotBack,
                                  "The session is open again"));
        else
            EXPECT_THAT(told, testing::IsEmpty());
        EXPECT_EQ(Nabto.OpenSessions(), test.Reopens ? 1U : 0U);
        if (!test.Reopens)
            Dialogs.ExpectMessage("The session is not valid"); // at the close
        Close();
    }
}

// Nothing else is opened, and no log starts, in the middle of an opening.
TEST_F(TLinkFaults, OneOpeningAtATime) {
    Start();
    RunUntilRows(4);
    Program->LiveLog.SaveDataLogFile("/t/log/userlog/a.csv");
    Dialogs.ExpectOpenFiles(Language("HeadAppl", "DialogOpenDatalogFileCaption"), {"/t/log/userlog/a.csv"});
    int asked = 0;
    Time.After(0, [&] {
        Main().OpenDatalogfile1.Click();
        Program->DatalogReader.OpenDatalogfile1Click();
        Program->SdDatalogReader.Open_sd_datalogClick();
        Program->ProfileOpening.OpenProfile2Click();
        Main().TrafficButton.Click();
        Program->LiveLog.StartLog(false, true);
        Program->DeviceActions.Setup1Click();
        ++asked;
    });
    Main().OpenDatalogfile1.Click();
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(Program->GraphPage.GraphSampleCount(), 3u);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_TRUE(Main().TrafficButton.Enabled());
    Close();
}

TEST_F(TLinkFaults, CloseInOrderInTheMiddleOfAQuestion) {
    StartLogging();
    SetFault("Latency=700ms");
    Time.Advance(3000);
    ASSERT_TRUE(Time.AdvanceUntil([this] { return Label().ends_with("-> Get Data"); }, 10000));
    Time.After(100, [this] { // delivered by the event loop that the question runs
        EXPECT_FALSE(Program->NabtoDevice.Cycle.timerQuery->Enabled());
        Main().Close();
    });
    Time.Advance(5000);
    EXPECT_TRUE(Application.IsTerminated);
    const std::size_t calls = Libraries.Calls.size();
    Time.Advance(60000);
    EXPECT_EQ(Libraries.Calls.size(), calls);
    Program->Finish();
}

} // namespace
} // namespace tidewell::test

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
    std::size_t Rows() { return Main().LogBuffers.DatalogCount; }
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
    const auto& raw = Main().LogBuffers.DataLogRawData;
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
    EXPECT_FALSE(Main().Profile.ProfileLoaded);
    EXPECT_FALSE(Main().DeviceID.Visible());
    Dialogs.ExpectMessage("Profile NOT loaded...");
    Dialogs.ExpectForm("SetupForm", {});
    Time.Advance(5000);
    EXPECT_FALSE(Main().LiveLog.DatalogOn);
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
    Files.Room = static_cast<std::size_t>(-1);
    Dialogs.ExpectMessage(Main().Texts.MessageClearGraphData, EModalResult::No);
    Main().TrafficButton.Click(); // stops
    Main().TrafficButton.Click(); // goes on with the log as it is
    RunUntilRows(6);
    EXPECT_EQ(FilesBelow("/t/log/userlog").size(), 1u);
    // Each row bears its own time, and none is left of the step that failed.
    const auto& times = Main().GraphPage.GraphDataLabelsTimeText;
    EXPECT_EQ(times.Count(), Rows());
    EXPECT_EQ(Main().GraphPage.GraphSampleCount(), Rows());
    EXPECT_EQ(times.At(Rows() - 1), Time.LongTime(Time.Now()));
    Close();
}

TEST_F(TLinkFaults, SendNoQuestionAfterAClose) {
    StartLogging();
    ASSERT_TRUE(Time.AdvanceUntil([this] { return Label().ends_with("-> Get Data"); }, 10000));
    std::size_t calls = 0;
    Time.After(50, [&] { // due with the question, and so delivered just before it is sent
        EXPECT_FALSE(Program->NabtoDevice.Cycle.timerQuery->Enabled());
        Main().Close1Click();
        calls = Libraries.Calls.size();
    });
    Time.Advance(60000);
    EXPECT_EQ(Libraries.Calls.size(), calls);
    Program->Finish();
}

TEST_F(TLinkFaults, CloseInOrderInTheMiddleOfAQuestion) {
    StartLogging();
    SetFault("Latency=700ms");
    Time.Advance(3000);
    ASSERT_TRUE(Time.AdvanceUntil([this] { return Label().ends_with("-> Get Data"); }, 10000));
    Time.After(100, [this] { // delivered by the event loop that the question runs
        EXPECT_FALSE(Program->NabtoDevice.Cycle.timerQuery->Enabled());
        Main().Close1Click();
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

#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <gmock/gmock.h>

namespace tidewell::test {
namespace {

using testing::Contains;

// How the program comes to its profile, by the user and by the device.
class TProfileChoice : public TProgramFixture {
  protected:
    static constexpr const char* OtherProfile = "/t/profile/Loft120_english.pls";
    static constexpr const char* BadProfile = "/t/profile/Bad_english.pls";
    static constexpr const char* BadProfileMessage =
        "/t/profile/Bad_english.pls: [SecondDevice] Enable: 'perhaps' is not a valid boolean value";

    void PutBadProfile() {
        Files.Put(BadProfile, "[NabtoDevice]\nPoll1=0;3;100;2;\n"
                              "[FirstDevice]\nEnable=1\nR1=30;3;100;2;List a;\n"
                              "[SecondDevice]\nEnable=perhaps\nR1=31;3;100;2;List a;\n"
                              "[List a]\nP1=Mode;100;0;7;0;0;1;3;7;;;;;0;Group;;;1;\n"
                              "[GraphPoints]\nG1=Mode;1;clRed;3;0;0;0;;;;;;1;\n");
    }
    // As a click in the running program: the general handler shows what leaves it.
    void OpenProfileByMenu(std::optional<std::filesystem::path> path) {
        Dialogs.ExpectMessage(Language("HeadAppl", "MessageStopLog"), EModalResult::Ok);
        Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), std::move(path));
        Time.After(0, [this] { Main().OpenProfile2.Click(); });
    }
    std::vector<std::string> Devices() {
        std::vector<std::string> names;
        for (const TMDevice& device : Program->ModbusPanel.DeviceList)
            names.push_back(device.Name);
        return names;
    }
};

TEST_F(TProfileChoice, GoesOnLoggingWhenTheQuestionIsCancelled) {
    Start();
    RunUntilRows(3);
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageStopLog"), EModalResult::Cancel);
    Main().OpenProfile2.Click();
    EXPECT_TRUE(Program->LiveLog.DatalogOn);
    EXPECT_EQ(Program->Paths.plsfile, Profile);
    RunUntilRows(6);
    Close();
}

TEST_F(TProfileChoice, HasNoProfileAfterACancelledFileDialog) {
    Start();
    RunUntilRows(3);
    OpenProfileByMenu(std::nullopt);
    Time.Advance(1000);
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_FALSE(Program->Profile.ProfileLoaded);
    EXPECT_TRUE(Program->Paths.plsfile.empty());
    EXPECT_EQ(Program->Profile.currentprofilefile, Profile);
    EXPECT_EQ(Program->LogBuffers.DatalogCount, 0u);
    const std::string before = Files.Content[Profile];
    Close();
    EXPECT_EQ(Files.Content[Profile], before); // no profile, no settings written back
}

TEST_F(TProfileChoice, ShowsAnotherProfileInEveryPart) {
    Start();
    RunUntilRows(3);
    OpenProfileByMenu(OtherProfile);
    Time.Advance(1000);
    EXPECT_EQ(Main().Caption(), OtherProfile);
    EXPECT_THAT(Main().MemoEventLog.Lines(), Contains(std::string(OtherProfile) + " opened"));
    EXPECT_THAT(Devices(), testing::ElementsAre("Device Loft 120"));
    ASSERT_FALSE(Program->SetpointPage.SetpointTreeView.Nodes().empty());
    EXPECT_EQ(Program->SetpointPage.SetpointTreeView.Nodes().front().Text, "Device Loft 120");
    const TIniSection questions = TIniFile(Files, OtherProfile).ReadSection("NabtoDevice");
    EXPECT_EQ(Program->NabtoDevice.Cycle.Questions.Count(), questions.Count());
    EXPECT_EQ(Program->NabtoDevice.Cycle.Questions.ValueAt(0), questions.ValueAt(0));
    EXPECT_EQ(Program->GraphPage.graph.Channels.Count(),
              static_cast<std::size_t>(Program->Profile.GraphEnableCount));
    const std::string before = Files.Content[Profile];
    Close();
    EXPECT_EQ(Files.Content[Profile], before);
}

TEST_F(TProfileChoice, TellsAFileThatHoldsNoProfileAndALogWithoutValues) {
    Start();
    const std::string good = Files.Content[OtherProfile];
    const auto open = [this] {
        OpenProfileByMenu(OtherProfile);
        Time.Advance(1000);
    };
    const TNotice& notice = Program->ProfileOpening.NoticeProfile;
    const TNotice& noValues = Program->LiveLog.NoticeNoValues;
    const auto told = [this](const TNotice& line) {
        return line.Visible() ? std::ranges::count(Main().MemoEventLog.Lines(), line.Text.Caption()) : -1;
    };
    Files.Put(OtherProfile, EncodeText(good, EEncoding::Utf16LittleEndian).substr(2)); // without its mark
    open();
    EXPECT_EQ(notice.Text.Caption(),
              std::string(OtherProfile) + " holds nothing of a profile, so nothing of it is shown.");
    EXPECT_EQ(told(notice), 1);
    Program->LiveLog.StartLog(false, true);
    Time.Advance(20'000);
    EXPECT_EQ(told(noValues), 1);
    Program->LiveLog.StopLog();
    EXPECT_EQ(told(noValues), -1);
    Files.Content.erase(OtherProfile);
    open();
    EXPECT_EQ(notice.Text.Caption(), std::string(OtherProfile) +
                                         " could not be read, so nothing of it is shown: Cannot read " +
                                         OtherProfile + ": No such file or directory");
    Files.Put(OtherProfile, EncodeText(good, EEncoding::Utf16LittleEndian));
    open();
    EXPECT_THAT(Devices(), testing::ElementsAre("Device Loft 120"));
    EXPECT_EQ(told(notice), -1);
    Close(); // which writes the graph settings
    EEncoding encoding{};
    EXPECT_THAT(DecodeText(Files.Content[OtherProfile], encoding), testing::HasSubstr("[VisibleGraph]"));
    EXPECT_EQ(encoding, EEncoding::Utf16LittleEndian);
}

// What the grid shows belongs to the open profile, or says that it does not.
TEST_F(TProfileChoice, TellsWhoseRowsTheGridKeeps) {
    const std::filesystem::path copy = "/t/profile/Copy.pls";
    Files.Put(copy, Files.Content[Profile]);
    for (const bool forget : {false, true}) {
        SCOPED_TRACE(forget);
        Start();
        Program->Extensions.SetpointPageForgetRows = forget;
        RunUntilRows(3);
        TSetpointPage& page = Program->SetpointPage;
        const auto choose = [&page](int group) {
            page.SetpointTreeView.SetSelected(TTreeView::TSelection{0, group});
            page.SetpointTreeView.OnClick();
        };
        choose(0);
        EXPECT_NE(page.SetpointGridDrawCell(1, 1).Text, "");
        EXPECT_FALSE(page.LblSetpointRows.Visible());
        const std::string name = page.SetpointGridDrawCell(0, 1).Text;
        OpenProfileByMenu(copy);
        Time.Advance(1000);
        EXPECT_EQ(page.LblSetpointRows.Visible(), !forget);
        EXPECT_EQ(page.SetpointGridDrawCell(0, 1).Text, forget ? "" : name);
        EXPECT_EQ(page.SetpointGridDrawCell(1, 1).Text, "");
        EXPECT_EQ(page.CurrentModbusID == -1, forget);
        EXPECT_EQ(page.LblSetpointPageEmpty.Visible(), forget);
        if (!forget) {
            EXPECT_EQ(
                page.LblSetpointRows.Caption(),
                "These rows are of the former profile Aria450_english.pls. Choose a group to see those of "
                "Copy.pls.");
        }
        // Values come with the first cycle.
        choose(0);
        EXPECT_FALSE(page.LblSetpointRows.Visible() || page.LblSetpointPageEmpty.Visible());
        EXPECT_NE(page.SetpointGridDrawCell(0, 1).Text, "");
        EXPECT_EQ(page.SetpointGridDrawCell(1, 1).Text, "");
        Program->LiveLog.StartLog(false, true);
        RunUntilRows(1);
        EXPECT_NE(page.SetpointGridDrawCell(1, 1).Text, "");
        Close();
    }
}

// The profile that one device has chosen is none of another that keeps silent.
TEST_F(TProfileChoice, IsNoneForASilentDevice) {
    const std::string silent = Language("TestfileComport", "Erroritemnumberdoesnotmatch");
    const auto link = [this](const std::string& id) {
        Dialogs.ExpectForm("SetupForm", [this, id](TForm&) {
            Program->SetupForm.txtRemote.Enter(id);
            Program->SetupForm.ButCommOk.Click();
        });
    };
    Start();
    RunUntilRows(2);
    Program->SetpointPage.SetpointTreeView.SetSelected(TTreeView::TSelection{0, 0});
    Program->SetpointPage.SetpointTreeView.OnClick();
    EXPECT_NE(Program->SetpointPage.SetpointGridDrawCell(1, 1).Text, "");
    Nabto.FindController("410000000002")->Faults.Replace({TFault{EFault::NoAnswer, 0, {}, {}}});
    link("410000000002");
    Dialogs.ExpectMessage(silent);
    Main().Setup1.Click();
    EXPECT_EQ(Program->SetpointPage.SetpointGridDrawCell(1, 1).Text, ""); // those were the former device's
    Dialogs.ExpectMessage("Profile NOT loaded...");
    link("410000000001");
    Main().TrafficButton.Click();
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    EXPECT_TRUE(Program->Profile.MayLog()); // the first device has answered again
    EXPECT_EQ(Program->Paths.plsfile, Profile);

    link("410000000002");
    Dialogs.ExpectMessage(silent);
    Main().Setup1.Click();
    // Files are still shown by it, and it keeps the settings of the graph.
    EXPECT_TRUE(Program->Profile.ProfileLoaded);
    Program->GraphPage.graph.Channels[0].SetVisible(false);
    Close();
    EXPECT_EQ(TIniFile(Files, Profile).ReadText("VisibleGraph", "graph 0"), "False");
}

TEST_F(TProfileChoice, AsksTwiceOrThriceAndTheLastAnswerDecides) {
    struct TCase {
        std::string Fault;
        std::ptrdiff_t Pings;
        bool Answers;
    };
    const TCase cases[] = {
        {"", 2, true},
        {"NoAnswer=on; times=1", 3, true},
        {"NoAnswer=on; times=2", 3, true},
        {"NoAnswer=on; skip=1; times=1", 2, false},
        {"NoAnswer=on", 3, false},
    };
    const std::string fresh = Files.Content[Simulation];
    for (const auto& test : cases) {
        SCOPED_TRACE(test.Fault);
        Files.Content[Simulation] = fresh + "\n[Faults aria1]\n" + test.Fault + "\n";
        Time.Advance(2000); // the library looks at the file
        Libraries.Calls.clear();
        if (!test.Answers)
            Dialogs.ExpectMessage(Language("TestfileComport", "Erroritemnumberdoesnotmatch"));
        Start();
        EXPECT_EQ(QueryCount("ping.json"), test.Pings);
        EXPECT_EQ(Program->Profile.ProfileLoaded, test.Answers);
        Close();
    }
}

TEST_F(TProfileChoice, IsTheUsersWithoutAutoload) {
    Edit(SystemFile, "AutoloadProfile=TRUE", "AutoloadProfile=FALSE");
    const std::string title = Language("HeadAppl", "DialogOpenProfileCaption");
    Dialogs.ExpectOpenFile(title, OtherProfile);
    Start();
    EXPECT_EQ(QueryCount("ping.json"), 2);
    EXPECT_EQ(Main().Caption(), OtherProfile); // though the device is of another model
    Close();

    Dialogs.ExpectOpenFile(title, std::nullopt);
    Dialogs.ExpectMessage(Language("TestfileComport", "ProfileNotChosen") + " 30021");
    Dialogs.ExpectOpenFile(title, Profile);
    Start();
    EXPECT_EQ(Main().Caption(), Profile);
    EXPECT_FALSE(Program->LiveLog.TimerLogAutostart->Enabled());
    Close();
}

TEST_F(TProfileChoice, LeavesNothingOfTheFormerProfileInABadOne) {
    PutBadProfile();
    Start();
    RunUntilRows(3);
    OpenProfileByMenu(BadProfile);
    Dialogs.ExpectMessage(BadProfileMessage);
    Time.Advance(1000);
    EXPECT_EQ(Program->Paths.plsfile, BadProfile);
    EXPECT_EQ(Program->NabtoDevice.Showquestions(), "Poll1=0;3;100;2;\r\n");
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
    Main().TrafficButton.Click();
    RunUntilRows(2);
    EXPECT_EQ(Program->LogBuffers.DataLogRawData.Columns(), 3u); // two values and the blank behind them
    const std::string former = Files.Content[Profile];
    Close();
    EXPECT_EQ(Files.Content[Profile], former);
    const TIniFile bad(Files, BadProfile);
    EXPECT_EQ(bad.ReadSection("GraphPoints").Count(), 1u);
    EXPECT_THAT(bad.ReadText("GraphPoints", "G1"), testing::StartsWith("Mode;1;clRed;3;"));
    EXPECT_EQ(bad.ReadSection("VisibleGraph").Count(), 1u);
}

TEST_F(TProfileChoice, SignsInAfterABadProfile) {
    PutBadProfile();
    Edit(SystemFile, "PortScan=TRUE", "PortScan=FALSE"); // asks for a profile first
    Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), BadProfile);
    Dialogs.ExpectMessage(BadProfileMessage);
    Start();
    EXPECT_THAT(Log, Contains(testing::StartsWith("POST /login ")));
    EXPECT_EQ(Main().Caption(), Profile); // of the device's model, after all
    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::Yes);
    Main().TrafficButton.Click();
    RunUntilRows(2);
    Close();
}

TEST_F(TProfileChoice, IsTheUsersWhenTheOneOfTheModelIsMissing) {
    Files.Content.erase(Profile);
    Dialogs.ExpectMessage(Language("TestfileComport", "ProfileMissing") + " \\t\\profile\\Aria450");
    Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), std::nullopt);
    Start();
    EXPECT_FALSE(Program->Profile.ProfileLoaded);
    EXPECT_TRUE(Program->Paths.plsfile.empty());
    Close();
}

TEST_F(TProfileChoice, LeavesAReadOnlyProfileAsItIs) {
    Files.Unwritable.insert(Profile);
    const std::string before = Files.Content[Profile];
    Start();
    Close();
    EXPECT_EQ(Files.Content[Profile], before);
    EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), 2u);
}

} // namespace
} // namespace tidewell::test

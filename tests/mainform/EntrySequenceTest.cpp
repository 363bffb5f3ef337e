#include "core/Errors.h"
#include "mainform/Program.h"
#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;

const char* const badFiles = "Error incorrect systemfile or languagefile application will close";

struct TEntry : testing::Test {
    TEntry() {
        Files.Put("/t/cfg/system_x.inn",
                  "[System]\nLanguageFile_Current=english.lng\n[CommInitModbus]\nDebugEnable=1\n"
                  "[Port]\nPortScan=true\n[Profile]\nAutoloadProfile=true\n");
        Files.Put("/t/cfg/english.lng",
                  "[Splashscreen]\nMessageLogFileDeleted=old logs done\nMessageMainAppDone=main "
                  "done\nMessageApplicationReady=ready\nMessageFileStructureMissing=files "
                  "missing\nVersionString=Version\n[HeadAppl]\nappl_title=Tool\n");
        Files.Put("/t/cfg/logo.png", "\x89PNG");
        Time.OnException = [this](const std::exception& error) { Dialogs.ShowMessage(error.what()); };
    }
    std::unique_ptr<TProgram> Build() {
        return tidewell::Build(
            TPorts{Dialogs, Time, Time, Time, Files, Libraries, Process, Application, Pictures,
                   [](const std::filesystem::path&) { return std::make_unique<TScriptedHttp>(); }},
            TStartOptions{"/t", "/t/tidewell", Arguments, Tsysteminfo{1, 2, 3, 4}});
    }
    // The library is missing, and the end of the program says so.
    void ExpectNoLibraryAtTheEnd() {
        Dialogs.ExpectMessage("No NabtoCloseSession Function Loaded");
        Dialogs.ExpectMessage("No NabtoShutdown Function Loaded");
    }
    std::vector<std::string> FilesIn(const std::filesystem::path& directory) {
        return Files.List(directory, "*");
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TNoLibraries Libraries;
    TFakeProcess Process;
    TFakeApplication Application;
    TFakePictures Pictures;
    std::vector<std::string> Arguments;
};

TEST_F(TEntry, ShowsEachSplashLineForItsTime) {
    const auto program = Build();
    std::vector<std::string> lines;
    const auto connection = program->Splashscreen.infostring.Changed.Connect([&] {
        lines.push_back(std::to_string(Time.Milliseconds()) + " " +
                        program->Splashscreen.infostring.Caption());
    });
    ASSERT_TRUE(program->Start());
    EXPECT_THAT(Time.Sleeps, ElementsAre(1000, 500, 700));
    EXPECT_THAT(lines, ElementsAre("0 old logs done", "1000 main done", "1500 ready"));
    EXPECT_EQ(program->Splashscreen.ver_lab.Caption(), "Version 1.2.3 Build: 4");
    EXPECT_FALSE(program->Splashscreen.Visible());
    EXPECT_TRUE(program->FormMain.Visible());
    EXPECT_EQ(program->FormMain.StatusBar.Panels()[3].Text, "Version : 1.2.3 Build: 4");
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, LeavesAnEventLogAnEmptyDatalogAndADebugLog) {
    Arguments = {"-devid"}; // not looked at: without the key, the link is not enabled
    Files.Content["/t/cfg/system_x.inn"] += "[CommInitNabto]\nDelayBetweenQuestions=0\n";
    auto program = Build();
    program->Start();
    Time.Advance(200);
    EXPECT_TRUE(Dialogs.Shown.empty());
    program->FormMain.Close();
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_THAT(FilesIn("/t/log/systemlog"),
                ElementsAre("02-03-2026080002debug.log", "02-03-2026080002eventlog.log",
                            "datalog02-03-20260800.csv"));
    EXPECT_EQ(Files.Content["/t/log/systemlog/02-03-2026080002eventlog.log"],
              "Library nabto_client_api not loaded: there is none\r\n"
              "/t/cfg/system_x.inn: [CommInitNabto] DelayBetweenQuestions: '0' is not possible, 1 is used\r\n"
              "Clear Graph execute\r\n");
    EXPECT_EQ(Files.Content["/t/log/systemlog/datalog02-03-20260800.csv"], ";[HeaderStart][HeaderEnd]\r\n");
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, EndsWithoutASystemFile) {
    Files.Put("/t/cfg/system_y.inn", "");
    const auto program = Build();
    Dialogs.ExpectMessage(badFiles);
    Dialogs.ExpectMessage(""); // the texts are unknown, too
    EXPECT_FALSE(program->Start());
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_FALSE(program->FormMain.Visible());
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, GoesOnToTheLoopWithoutALanguageFile) {
    Files.Content.erase("/t/cfg/english.lng");
    const auto program = Build();
    Dialogs.ExpectMessage(badFiles);
    EXPECT_TRUE(program->Start());
    EXPECT_THAT(Time.Sleeps, ElementsAre(1000, 500, 700));
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_FALSE(program->FormMain.Visible());
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, NamesWhatIsWrongWithTheLogo) {
    Files.Content["/t/cfg/logo.png"] = "GIF";
    auto program = Build();
    Dialogs.ExpectMessage("Error: Unsupported image format");
    program->Start();
    EXPECT_TRUE(Application.IsTerminated);
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, NamesFileKeyAndValueOfABadBoolean) {
    auto& system = Files.Content["/t/cfg/system_x.inn"];
    system.replace(system.find("DebugEnable=1"), 13, "DebugEnable=maybe");
    const auto program = Build();
    Dialogs.ExpectMessage(
        "/t/cfg/system_x.inn: [CommInitModbus] DebugEnable: 'maybe' is not a valid boolean value");
    EXPECT_FALSE(program->Start());
    EXPECT_TRUE(Application.IsTerminated);
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, KeepsTheFormOpenOnceWhenTheLogCannotBeSaved) {
    auto program = Build();
    program->Start();
    Time.Advance(200);
    const std::string eventlog = "/t/log/systemlog/02-03-2026080002eventlog.log";
    Files.Unwritable.insert(eventlog);
    EXPECT_THROW(program->FormMain.Close(), EInOutError);
    EXPECT_TRUE(program->FormMain.Visible());
    EXPECT_THAT(FilesIn("/t/log/systemlog"), ElementsAre()); // the rest has not run
    Dialogs.ExpectMessage("Cannot write " + eventlog + ": Permission denied");
    program->FormMain.Close();
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_THAT(FilesIn("/t/log/systemlog"),
                ElementsAre("02-03-2026080002debug.log", "datalog02-03-20260800.csv"));
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, KeepsTheDatalogOfAnEarlierRunInTheSameMinute) {
    Files.Put("/t/log/systemlog/datalog02-03-20260800.csv", "earlier");
    auto program = Build();
    program->Start();
    Time.Advance(200);
    program->FormMain.Close();
    EXPECT_EQ(Files.Content["/t/log/systemlog/datalog02-03-20260800.csv"], "earlier");
    EXPECT_TRUE(Files.FileExists("/t/log/systemlog/datalog02-03-20260800-2.csv"));
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, StartsTheSecondStageOnlyWithTheMainForm) {
    Files.Content["/t/cfg/system_x.inn"] += "[CommInitNabto]\nPauseTime=soon\n";
    auto& system = Files.Content["/t/cfg/system_x.inn"];
    system.replace(system.find("PortScan=true"), 13,
                   "PortScan=no"); // the second stage would ask for a profile
    auto program = Build();
    Dialogs.ExpectMessage(
        "/t/cfg/system_x.inn: [CommInitNabto] PauseTime: 'soon' is not a valid floating point value");
    program->Start();
    Time.Advance(1000);
    EXPECT_TRUE(Application.IsTerminated);
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, EndsWhenTheParametersAreWrong) {
    Files.Content["/t/cfg/system_x.inn"] += "[CommInitNabto]\nEnabled=TRUE\n";
    Arguments = {"-devid"};
    auto program = Build();
    program->Start();
    Dialogs.ExpectMessage("A value for the parameter -devid was not supplied");
    Dialogs.ExpectMessage("Some parameters were not parsed correctly. Closing the program.");
    Time.Advance(200);
    EXPECT_TRUE(Application.IsTerminated);
    EXPECT_EQ(FilesIn("/t/log/systemlog").size(), 3u);
    ExpectNoLibraryAtTheEnd();
}

TEST_F(TEntry, OffersTheProfileDialogUnlessTheDeviceDecides) {
    auto& system = Files.Content["/t/cfg/system_x.inn"];
    system.replace(system.find("AutoloadProfile=true"), 20, "AutoloadProfile=1"); // only "true" is true here
    Files.Put("/t/profile/x.pls", "[MyDevice]\nEnable=1\nR1=7;3;0;1;List;\n");
    const auto program = Build();
    program->Start();
    Dialogs.ExpectOpenFile("", "/t/profile/x.pls");
    Time.Advance(200);
    EXPECT_EQ(Dialogs.LastFileDialog.InitialDirectory, "/t/profile");
    EXPECT_EQ(Dialogs.LastFileDialog.Filters[1].Mask, " *.zls;*.csv");
    EXPECT_EQ(program->ModbusPanel.PingTestModbusID, "7");
    EXPECT_EQ(program->FormMain.Caption(), "/t/profile/x.pls");
    EXPECT_THAT(program->FormMain.MemoEventLog.Lines(), testing::Contains("/t/profile/x.pls opened"));
    ExpectNoLibraryAtTheEnd();
}

} // namespace
} // namespace tidewell::test

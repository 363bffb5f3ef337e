#pragma once

#include "core/KvSupport.h"
#include "core/TextFile.h"
#include "scenario/ProgramFixture.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell::test {

// The whole program, with what an engineer does about setpoints.
class TSetpointProgram : public TProgramFixture {
  protected:
    TSetpointPage& Page() { return Program->SetpointPage; }
    TInputDialog& Dialog() { return Program->InputDialog; }
    TLoadSetpoints& Form() { return Program->LoadSetpoints; }
    TNabtoDevice& Driver() { return Program->NabtoDevice; }
    const std::vector<std::string>& EventLog() { return Main().MemoEventLog.Lines(); }

    TSimulatedController& Controller() { return *Nabto.FindController(Arguments.at(1)); }
    std::string Held(std::int32_t address) {
        const auto value = Controller().Values.Read(ETable::Setpoint, {0, address}, Nabto.NowMs());
        return value ? std::to_string(*value) : "none";
    }
    void Hold(std::int32_t address, double value) {
        Controller().Values.Add({.First = {0, address},
                                 .Sources = {{.First = value}},
                                 .Signed = value < 0,
                                 .RefusedStatus = {},
                                 .WrittenAt = {}});
    }
    // Occasions for a fault: those of that query, or all; without times from the first on for good.
    static TFaultCondition When(const std::string& query, std::size_t skip = 0,
                                std::optional<std::size_t> times = {},
                                std::optional<std::int64_t> toMs = {}) {
        return {.ToMs = toMs, .Query = query, .Skip = skip, .Times = times};
    }
    static void ExpectGolden(const std::string& name, const std::string& bytes) {
        TProgramFixture::ExpectGolden("setpoints/" + name, bytes);
    }
    // Writes that went to the library, "<address>=<value>".
    std::vector<std::string> Writes() const {
        std::vector<std::string> writes;
        for (const std::string& call : Libraries.Calls)
            if (const auto at = call.find("/setpointWriteValue.json?"); at != std::string::npos) {
                const auto pieces = SplitStrictly(std::string_view(call).substr(call.find('{', at)), '"');
                writes.push_back(std::string(pieces.at(11)) + "=" + std::string(pieces.at(15)));
            }
        return writes;
    }

    // Opens another profile of the same program: one that polls the setpoints at the addresses 100 to 103.
    void OpenProfile(const std::string& devices) {
        Files.Put("/t/p.pls", "[NabtoDevice]\nq=0;3;100;4;\n" + devices);
        Program->ModbusPanel.SetMpanelPLSpath("/t/p.pls");
        Program->ModbusPanel.InitQuestionStringlistStructures();
        Driver().SetNabtoQuestion("/t/p.pls");
        Page().BuildSetpointTree();
    }
    void OpenRows(const std::string& listRows) {
        OpenProfile("[Main Device]\nEnable=1\nR1=30;3;0;4;L;\n[L]\n" + listRows);
    }

    // The next right click on the first device's node chooses that entry.
    void ExpectEntry(TMenuItem& item) {
        Dialogs.ExpectPopup("Setpointpopup", [&item](TPopupMenu&) { item.Click(); });
    }
    void RightClick() {
        Page().SetpointTreeView.SetSelected(TTreeView::TSelection{0, -1});
        Page().SetpointTreeView.OnRightMouseButton();
    }
    // A save that comes to no file.
    void SaveInVain() {
        ExpectEntry(Page().Savesetpoints1);
        RightClick();
    }
    // The bytes of the file that a save leaves, after so many messages on values that are none.
    std::string Save(const std::filesystem::path& path = "/t/setpoint/saved.csv", int badValues = 0) {
        ExpectEntry(Page().Savesetpoints1);
        for (int i = 0; i < badValues; ++i)
            Dialogs.ExpectMessage("Error Data not valid Code= 1");
        Dialogs.ExpectSaveFile(Language("HeadAppl", "DialogSaveDatalogFile"), path);
        RightClick();
        return Files.FileExists(path) ? Files.Read(path) : "no file";
    }
    void Load(const std::string& bytes, const std::function<void(TLoadSetpoints&)>& action) {
        Files.Put("/t/list.csv", bytes);
        ExpectEntry(Page().Loadsetpointfromfile1);
        Dialogs.ExpectOpenFile(Language("HeadAppl", "DialogOpenProfileCaption"), "/t/list.csv");
        Dialogs.ExpectForm("LoadSetpoints", [this, action](TForm&) { action(Form()); });
        RightClick();
    }
    static std::string Result(std::size_t errors, std::size_t readErrors) {
        return "Setpointwrite is done. Number of write Errors " + std::to_string(errors) +
               " Number of Read error " + std::to_string(readErrors) +
               " Resultfile saved in systemlog folder";
    }
    // The file of a run that ends so many seconds from now.
    std::string ResultPath(int seconds = 0) const {
        const TTime time = Time.Now() + std::chrono::seconds(seconds);
        return "/t/log/systemlog/WriteMultibleSetpointsResult " +
               DigitsOnly(Time.ShortDate(time) + Time.LongTime(time)) + ".csv";
    }
    std::vector<std::string> ResultLines() const { return ReadLines(Files, ResultPath()); }
    void PressReturn(TForm& form) {
        bool handled = false;
        form.OnKeyDown(EKey::Return, handled);
        EXPECT_TRUE(handled);
    }
};

constexpr TColor writtenColor{0x008000};
constexpr TColor failedColor{0x0000FF};

} // namespace tidewell::test

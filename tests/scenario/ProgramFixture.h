#pragma once

#include "mainform/Program.h"
#include "sim/cloud/SimulatedCloud.h"
#include "sim/nabto/InProcessLibrary.h"
#include "sim/nabto/SimulatedNabto.h"
#include "sim/nabto/SimulationTime.h"
#include "support/FakeKHelper.h"
#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

// Dialogs below which something else can happen.
class TBusyDialogs : public TScriptedDialogs {
  public:
    std::function<void()> Meanwhile; // runs once, while the next message box or file dialog is shown
    std::function<void(const std::string&)> OnMessage; // takes the text of each message box first

    EModalResult ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) override {
        if (OnMessage)
            OnMessage(text);
        const EModalResult answer = TScriptedDialogs::ShowMessageBox(kind, text, buttons);
        RunMeanwhile();
        return answer;
    }
    std::optional<std::filesystem::path> OpenFile(const TFileDialog& dialog) override {
        auto answer = TScriptedDialogs::OpenFile(dialog);
        RunMeanwhile();
        return answer;
    }

  private:
    void RunMeanwhile() {
        ++Modals;
        if (const auto action = std::exchange(Meanwhile, nullptr))
            action();
        --Modals;
    }
};

// One line of the fixture's log that is to come: "box " and its text, "form " and its name, a request or a
// call.
struct TStep {
    TStep(std::string line, std::function<void()> action = {}, EModalResult answer = EModalResult::Ok)
        : Line(std::move(line)), Action(std::move(action)), Answer(answer) {}
    TStep(const char* line) : Line(line) {}

    std::string Line;
    std::function<void()> Action; // drives the form
    EModalResult Answer = EModalResult::Ok;
};
using TSteps = std::vector<TStep>;

// The whole program on the example installation, laid out in memory below "/t", against the simulated
// controllers and the cloud stand-in, in virtual time. The general handler shows what leaves a timer.
class TProgramFixture : public testing::Test {
  protected:
    static constexpr const char* Profile = "/t/profile/Aria450_english.pls";
    static constexpr const char* SystemFile = "/t/cfg/system_hushvane.inn";
    static constexpr const char* Device = "410000000001";
    static constexpr const char* Simulation = "/t/nabto_config/simulation.ini";

    TProgramFixture();

    // Builds the program, runs the entry sequence and the second stage. The arguments default to the direct
    // controller and a right password.
    TProgram& Start();
    // Closes the main form and the program, so that nothing is left.
    void Close();
    // Replaces the first occurrence in a file of the installation; fails the test if it is not there.
    void Edit(const std::filesystem::path& path, const std::string& from, const std::string& to);
    std::string Language(const std::string& section,
                         const std::string& key) const; // text of the language file
    // Runs until that many rows are logged; fails the test after an hour.
    void RunUntilRows(std::size_t rows);
    std::vector<double> Samples(std::size_t rows); // what each channel of the graph holds of the first rows
    std::vector<std::string> FilesBelow(const std::filesystem::path& directory) const;
    // Compares with a file below golden. With TIDEWELL_UPDATE_GOLDEN set that is written anew instead; look
    // at the difference then.
    static void ExpectGolden(const std::filesystem::path& name, const std::string& bytes);
    // Queries of that name that went to the library.
    std::ptrdiff_t QueryCount(const std::string& query) const;
    TFormMain& Main() { return Program->FormMain; }

    // What the log holds from here on, in order; CheckLog compares it and begins anew.
    void Expect(const TSteps& steps);
    void CheckLog();
    static TStep Box(const std::string& text, EModalResult answer = EModalResult::Ok) {
        return TStep("box " + text, {}, answer);
    }
    TStep SetupDialog(const std::function<void(TSetupForm&)>& action);
    TStep LogOn(const std::string& user, const std::string& password, bool offline = false);
    TStep CancelLogOn();
    static TStep LoginRequest(const std::string& user, const std::string& password, int code);
    static TStep Request(const std::string& text, int code) { return text + " -> " + std::to_string(code); }
    // The library's session, when the user of the session has no profile yet.
    static TSteps OpenedSession();
    // Pings that are answered.
    void ExpectPings(const std::string& id, int count);
    // Takes the questions of poll cycles from the log, each with the free of its answer.
    void DropPollsFromLog();

    std::vector<std::string> Arguments{"-devid", Device, "-LoginUserPW", "service;tidewell"};
    TMemoryFiles Files;
    TVirtualTime Time;
    TBusyDialogs Dialogs;
    TFakeProcess Process;
    TFakeApplication Application;
    TFakePictures Pictures;
    TPortTime SimulationTime{Time, Time};
    TSimulatedNabto Nabto{Files, SimulationTime};
    TInProcessLibrary Libraries{Nabto};
    TFakeKHelper KHelper{&Libraries};
    std::unique_ptr<TSimulatedCloud> Cloud;
    // Library calls, requests, message boxes and expected forms in their common order. A request has its
    // token in brackets, as "token1" for the first one since the start: "GET /Nabtouser [token1] -> 200".
    std::vector<std::string> Log;
    std::filesystem::path CaFile; // that the program asked to trust
    bool Online = true;
    std::unique_ptr<TProgram> Program;

  private:
    std::string ShortCall(const std::string& call) const;
    std::string RequestLine(const THttpRequest& request, const THttpReply& reply);

    std::vector<std::string> Expected;
    std::vector<std::string> Tokens; // in the order handed out since the start
};

} // namespace tidewell::test

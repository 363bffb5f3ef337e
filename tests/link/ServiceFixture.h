#pragma once

#include "FakeNabto.h"
#include "core/Extensions.h"
#include "core/Paths.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "link/DeviceUse.h"
#include "link/EepromReader.h"
#include "link/FlashDatalog.h"
#include "link/Nabto.h"
#include "link/ServiceTools.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

// The service tools and a device that answers as it is told.
class TServiceFixture : public testing::Test, public TFlashDatalog::IHost {
  protected:
    TServiceFixture() {
        Library.Reply = [this](const std::string&) {
            if (OnQuery)
                OnQuery();
            return "{\"response\":{\"status\":" + std::to_string(Status) + "}}";
        };
        Nabto.MayGoOn = [this] { return !Flash.Stopped(); };
        Library.OnCall = [this] {
            if (OnRead && Library.Calls.back().starts_with("nabtoStreamReadIntoBuf"))
                OnRead();
        };
    }

    void StopRunningLog() override { Events.emplace_back("StopRunningLog"); }
    void AddEventLog(const std::string& line) override { Events.push_back(line); }
    std::int32_t FlashCounterAddress() const override { return 256; }
    std::string CreateDatalogHeader() const override { return ";[HeaderStart]x[HeaderEnd]"; }
    std::filesystem::path GetFlashLogProfilepath() const override { return Profile; }
    void ShowFlashDatalog(const std::filesystem::path& profile, const std::filesystem::path& file) override {
        Events.push_back("show " + profile.string() + " " + file.string());
    }
    bool FormOpen() const override { return Open; }

    // What went to the library since the last call, without handles, URL prefix and the reads of streams.
    std::vector<std::string> Calls() {
        std::vector<std::string> calls;
        const std::string query = "nabtoRpcInvoke none nabto://" + device + "/";
        for (std::string call : std::exchange(Library.Calls, {})) {
            if (call.starts_with("nabtoStreamReadIntoBuf"))
                continue;
            if (call.starts_with(query))
                call = call.substr(query.size());
            calls.push_back(call.substr(0, call.find(" none")).substr(0, call.find(" stream")));
        }
        return calls;
    }
    const std::vector<std::string>& Memo() const { return memoDebug.Lines(); }
    std::string FileText(const std::string& name) const {
        const auto path = "/app/log/userlog/" + name;
        return Files.FileExists(path) ? Files.Read(path) : "none";
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    TCurrentInifilesPath Paths{"/app/cfg/system_x.inn", "/app/cfg/english.lng", {}, "/app/cfg", "/app"};
    TUNabto Nabto{Library, Dialogs, Time, Time, Files, "/app"};
    std::string device = "123456789012.remote.example";
    TMemo memoDebug{"memoDebug"};
    TStatusBar StatusBar{"StatusBar", {{1, {}, false}, {1, {}, false}, {1, {}, false}}};
    TLabel LblJson{"LblJson"};
    TDeviceUse Use;
    TExtensions Extensions;
    TReadTexts Texts;
    TEepromReader Eeprom{Nabto, memoDebug, device, Extensions, Texts};
    TFlashDatalog Flash{{*this, Dialogs, Files, Time, Paths, Nabto, Use, Eeprom, memoDebug, StatusBar, device,
                         Extensions, Texts}};
    TServiceTools Tools{{Dialogs, Files, Time, Paths, Nabto, Use, Eeprom, Flash, memoDebug, LblJson, device,
                         Extensions, Texts}};

    std::vector<std::string> Events; // that the main form was asked for
    std::filesystem::path Profile = "/app/profile/p_Flash.pls";
    bool Open = true;
    int Status = 0; // of each query
    std::function<void()> OnQuery;
    std::function<void()> OnRead;
};

} // namespace tidewell::test

#pragma once

#include "LinkRig.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "link/EepromReader.h"
#include "link/FlashDatalog.h"
#include "link/ServiceTools.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

// The service tools and a device that answers as it is told.
class TServiceFixture : public TLinkRig {
  protected:
    TServiceFixture()
        : TLinkRig({"/app/cfg/system_x.inn", "/app/cfg/english.lng", {}, "/app/cfg", "/app"},
                   "123456789012.remote.example") {
        Library.Reply = [this](const std::string&) {
            if (OnQuery)
                OnQuery();
            return "{\"response\":{\"status\":" + std::to_string(Status) + "}}";
        };
        Nabto.OnMayGoOn = [this](bool& goesOn) { goesOn = !Flash.Stopped(); };
        Library.OnCall = [this] {
            if (OnRead && Library.Calls.back().starts_with("nabtoStreamReadIntoBuf"))
                OnRead();
        };
        Flash.OnStopRunningLog = [this] { Events.emplace_back("StopRunningLog"); };
        Flash.OnShowFlashDatalog = [this](const std::filesystem::path& profile,
                                          const std::filesystem::path& file) {
            Events.push_back("show " + profile.string() + " " + file.string());
        };
        World.Profile.currentprofilefile = "x";
        World.Profile.FlashPage.DF_FDCountNum = 256;
        World.Profile.FlashPage.FlashLogProfile = "/app/profile/p_Flash.pls";
        Files.Put("/app/profile/p_Flash.pls", "");
    }

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

    TLabel LblJson{"LblJson"};
    TEepromReader Eeprom{Services};
    TFlashDatalog Flash{Services, Eeprom};
    TServiceTools Tools{Services, Eeprom, Flash, LblJson};

    std::vector<std::string> Events; // that were told upward
    int Status = 0;                  // of each query
    std::function<void()> OnQuery;
    std::function<void()> OnRead;
};

} // namespace tidewell::test

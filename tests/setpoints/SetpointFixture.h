#pragma once

#include "core/Paths.h"
#include "link/FakeNabto.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "model/ModbusPanel.h"
#include "setpoints/LoadSetpoints.h"
#include "setpoints/ReadBack.h"
#include "sim/controller/SimulatedController.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

// The main form, as far as reading back and saving need it.
struct TSetpointHost : TReadBack::IHost, TNabtoDevice::IHost {
    explicit TSetpointHost(TNabtoDevice& device) : Device(device) {}
    void StartLog(bool questionEnable, bool clearData) override {
        Events.push_back(std::string("start") + (questionEnable ? " asked" : "") +
                         (clearData ? " clear" : ""));
        OnStart();
        Device.startLog();
    }
    void StopLog() override {
        Events.emplace_back("stop");
        Device.stopLog();
    }
    bool FormOpen() const override { return Open; }
    void UpdateTimerTimer() override { OnCycle(); }
    void Setup1Click() override {}
    void AddEventLog(const std::string&) override {}
    bool ShowButtonDevid() const override { return false; }
    bool ErrorLogVisible() const override { return false; }

    TNabtoDevice& Device;
    bool Open = true;
    std::vector<std::string> Events;
    std::function<void()> OnStart = [] {
    };
    std::function<void()> OnCycle = [] {
    };
};

// A device of four setpoints at the addresses 100 to 103, polled every 2 seconds, and a simulated controller.
class TSetpointFixture : public testing::Test {
  protected:
    TSetpointFixture() {
        LoadProfile("A=Air ;100;0;99;1;0;40100;3;1;;;;;;G;\nB=Boost;101;0;9;0;0;40101;4;0;;;;;;G;\n"
                    "C=Code;102;0;9;0;0;40102;5;0;;;;;;G;\nD=Duct;103;-9;9;0;0;40103;6;0;;;;;;G;\n");
        Files.Put("/t/nabto_config/standalone.xml", "<a/>");
        for (std::int32_t i = 0; i < 4; ++i)
            Set(i, 10 * (i + 1));
        Library.Reply = [this](const std::string& url) -> std::optional<std::string> {
            const auto query = url.find('/', 8) + 1;
            const auto json = url.find("?json=");
            const auto reply =
                Controller.Query(url.substr(query, json - query), url.substr(json + 6), Time.Milliseconds());
            return reply.Answered ? std::optional(reply.Text) : std::nullopt;
        };
        Nabto.Init("u", "p");
        Device.device = "123456789012";
        Device.initialized = true;
    }
    void LoadProfile(const std::string& listRows) {
        Files.Put("/t/p.pls",
                  "[NabtoDevice]\nq=0;3;100;4;\n[Main Device]\nEnable=1\nR1=1;3;0;4;L;\n[L]\n" + listRows);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath("/t/p.pls");
        Panel.InitQuestionStringlistStructures();
        Device.SetNabtoQuestion("/t/p.pls");
    }
    void Set(std::int32_t index, std::int32_t value) {
        Controller.Values.Add({.First = {0, 100 + index},
                               .Sources = {{.First = double(value)}},
                               .Signed = value < 0,
                               .RefusedStatus = {},
                               .WrittenAt = {}});
    }
    std::int32_t Held(std::int32_t index) {
        return Controller.Values.Read(ETable::Setpoint, {0, 100 + index}, 0).value_or(-1);
    }

    TCurrentInifilesPath Paths{{}, {}, {}, {}, "/t"};
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    TSimulatedController Controller{{}};
    TUNabto Nabto{Library, Dialogs, Time, Time, Files, "/t"};
    TModbusPanel Panel{Files, Time};
    TSetpointHost Host{Device};
    TNabtoDevice Device{Dialogs, Time, Time, Files, Paths, Nabto, Panel, Host};
    TReadBack ReadBack{Host, Time, Device};
    TMemo MemoEventLog{"MemoEventLog"};
    std::string SelectedSetpointParent = "Main Device";
    TLoadSetpoints Form{{Dialogs, Files, Time, Panel, Device, ReadBack, Host, MemoEventLog,
                         SelectedSetpointParent, Paths.directorypath}};
};

} // namespace tidewell::test

#pragma once

#include "FakeNabto.h"
#include "core/Paths.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "link/ContinuousUpdate.h"
#include "link/DeviceUse.h"
#include "link/FileUpload.h"
#include "link/FirmwareUpdate.h"
#include "link/Nabto.h"
#include "link/UpdateRun.h"
#include "link/UpdateStatus.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

// What is sent to a device during an update, and a device that answers as it is told.
class TUpdateFixture : public testing::Test {
  protected:
    TUpdateFixture() {
        Library.Reply = [this](const std::string& url) {
            return Answer(url);
        };
        Library.OnCall = [this] {
            ++Exchanges;
            if (OnExchange)
                OnExchange();
        };
        Nabto.MayGoOn = [this] {
            return Open;
        };
        streamDelayEdit.SetText("10");
    }

    void TearDown() override { OnExchange = nullptr; } // the library outlives what a test made

    // Text of a member of a request.
    static std::string Field(const std::string& request, const std::string& name) {
        const auto at = request.find("\"" + name + "\":");
        if (at == std::string::npos)
            return {};
        std::string text = request.substr(at + name.size() + 3);
        text.resize(text.find_first_of(",}"));
        std::erase(text, '"');
        return text;
    }

    static std::string Status(std::int64_t status) {
        return R"({"response":{"status":)" + std::to_string(status) + "}}";
    }

    // The next answers to that kind of request, in order; later ones get the last of them.
    void Reply(const std::string& kind, std::deque<std::int64_t> answers) {
        Answers[kind] = std::move(answers);
    }

    // Requests sent so far, and begins anew. Packets of one size in a row come as one: "8 #1-16 x256".
    std::string TakeWire() {
        std::string text;
        for (std::size_t i = 0; i < Wire.size(); ++i) {
            std::size_t last = i;
            while (last + 1 < Wire.size() && Wire[last + 1].Follows(Wire[last]))
                ++last;
            text += (text.empty() ? "" : "; ") + Wire[i].Kind;
            if (Wire[i].Packet)
                text += " #" + std::to_string(*Wire[i].Packet) +
                        (last == i ? "" : "-" + std::to_string(*Wire[last].Packet)) + " x" +
                        std::to_string(Wire[i].Size);
            i = last;
        }
        Wire.clear();
        return text;
    }
    std::vector<std::string> TakeLines() {
        auto lines = memoDebug.Lines();
        memoDebug.Clear();
        return lines;
    }

    std::function<void()> OnExchange; // at each call of the library
    int Exchanges = 0;
    TCurrentInifilesPath Paths{"/app/cfg/s.inn", {}, "/app/profile/p.pls", "/app/cfg", "/app"};
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    TUNabto Nabto{Library, Dialogs, Time, Time, Files, "/app"};
    TMemo memoDebug{"memoDebug"};
    TEdit streamDelayEdit{"streamDelayEdit"};
    TButton ButContUpdate{"ButContUpdate"};
    TStatusBar StatusBar{"StatusBar", {{200, {}, false}}};
    std::string Device = "410000000001.remote.example";
    std::filesystem::path CurrentUpdateSWFile = "/pkg/config.fwc";
    bool EnableContineousUpdate = false;
    bool Open = true; // the program
    TDeviceUse Use;
    TUpdateStatus UpdateStatus{Time};
    TUpdateRun Run{Time, Nabto, UpdateStatus, Device, [this] {
                       return Open;
                   }};
    TFileUpload Upload{
        {Dialogs, Files, Time, Nabto, Run, memoDebug, streamDelayEdit, Device, CurrentUpdateSWFile}};
    TFirmwareUpdate Update{{Dialogs, Files, Time, Paths, Nabto, Use, Run, UpdateStatus, Upload, memoDebug,
                            Device, EnableContineousUpdate, CurrentUpdateSWFile}};
    TContinuousUpdate Continuous{{Dialogs, Files, Time, Time, Paths, Use, UpdateStatus, Update, memoDebug,
                                  StatusBar, ButContUpdate, Device, EnableContineousUpdate,
                                  CurrentUpdateSWFile}};

    std::optional<std::string> Ping; // the answer; nothing while the device is away
    std::string CrcReply = R"({"response":{"data":[{"value":0}]}})";

  private:
    struct TSent {
        std::string Kind;
        std::optional<int> Packet;
        std::size_t Size = 0;
        bool Follows(const TSent& other) const {
            return Packet && other.Packet && Kind == other.Kind && Size == other.Size &&
                   *Packet == *other.Packet + 1;
        }
    };

    std::optional<std::string> Answer(const std::string& url) {
        const auto name = url.substr(url.rfind('/', url.find('?')) + 1);
        const std::string query = name.substr(0, name.find('.'));
        if (query == "ping") {
            Wire.push_back({"ping", {}, 0});
            return Ping;
        }
        if (query == "setpointReadValue") {
            Wire.push_back(
                {"read " + Field(url, "address") + "," + Field(url, "length") + "," + Field(url, "obj"),
                 {},
                 0});
            return CrcReply;
        }
        std::string kind = query;
        std::int64_t answer = 0;
        const std::string state = Field(url, "nostreamstate");
        if (query == "FlashWriteNostreamV2") {
            kind = state;
            const int number = std::stoi(Field(url, "blocknumber"));
            std::size_t size = 0;
            for (auto at = url.find("payload"); at != std::string::npos; at = url.find("payload", at + 1))
                ++size;
            Crcs.push_back(std::stoi(Field(url, "blockCRC")));
            Wire.push_back({kind, number, size});
            answer = std::int64_t{number} << 16;
        } else if (query == "FlashWriteNostream") {
            kind = state;
            const std::string block = Field(url, "blocknumber");
            Wire.push_back({state + (block == "0" ? "" : "@" + block), {}, 0});
            EXPECT_NE(url.find(R"("list":[{"payload":9}]}})"), std::string::npos);
        } else if (query == "prepareUpdate") {
            answer = 131072;
            Wire.push_back(
                {"prepare " + Field(url, "fileid") + "," + Field(url, "filesize") + "," + Field(url, "crc32"),
                 {},
                 0});
        } else if (query == "flashWrite") {
            Wire.push_back({"flash " + Field(url, "address") + "," + Field(url, "length"), {}, 0});
        } else {
            Wire.push_back({query.substr(0, 5) + " " + Field(url, "cmd"), {}, 0});
        }
        if (auto& told = Answers[kind]; !told.empty()) {
            // For a packet: what to add to the right answer.
            answer = told.front() + (query == "FlashWriteNostreamV2" ? answer : 0);
            if (told.size() > 1)
                told.pop_front();
        }
        if (answer == NoReply)
            return std::nullopt;
        return Status(answer);
    }

  protected:
    static constexpr std::int64_t NoReply = -999;
    std::vector<int> Crcs; // of the packets

  private:
    std::map<std::string, std::deque<std::int64_t>> Answers;
    std::vector<TSent> Wire;
};

} // namespace tidewell::test

#pragma once

#include "LinkRig.h"
#include "core/KvSupport.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "link/ContinuousUpdate.h"
#include "link/FileUpload.h"
#include "link/FirmwareUpdate.h"
#include "link/UpdateRun.h"
#include "link/UpdateStatus.h"
#include "support/WireText.h"

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
class TUpdateFixture : public TLinkRig {
  protected:
    TUpdateFixture()
        : TLinkRig({"/app/cfg/s.inn", {}, "/app/profile/p.pls", "/app/cfg", "/app"},
                   "410000000001.remote.example") {
        CurrentUpdateSWFile = "/pkg/config.fwc";
        Library.Reply = [this](const std::string& url) { return Answer(url); };
        Library.OnCall = [this] {
            ++Exchanges;
            if (OnExchange)
                OnExchange();
        };
        Nabto.OnMayGoOn = [this](bool& goesOn) { goesOn = Open && !Run.Stopped(); };
        streamDelayEdit.SetText("10");
    }

    void TearDown() override { OnExchange = nullptr; } // the library outlives what a test made

    static std::string Status(std::int64_t status) {
        return R"({"response":{"status":)" + std::to_string(status) + "}}";
    }

    // The next answers to that kind of request, in order; later ones get the last of them.
    void Reply(const std::string& kind, std::deque<std::int64_t> answers) {
        Answers[kind] = std::move(answers);
    }

    // Requests sent so far, and begins anew.
    std::string TakeWire() {
        std::vector<std::string> queries;
        for (; Taken < Library.Calls.size(); ++Taken)
            if (Library.Calls[Taken].starts_with("nabtoRpcInvoke"))
                queries.push_back(Library.Calls[Taken]);
        return Join(WireText(queries), "; ");
    }
    std::vector<std::string> TakeLines() {
        auto lines = memoDebug.Lines();
        memoDebug.Clear();
        return lines;
    }

    std::function<void()> OnExchange; // at each call of the library
    int Exchanges = 0;
    TEdit streamDelayEdit{"streamDelayEdit"};
    TButton ButContUpdate{"ButContUpdate"};
    TUpdateStatus UpdateStatus{Form, Time};
    TUpdateRun Run{Services, UpdateStatus};
    TFileUpload Upload{Services, Run, streamDelayEdit};
    TFirmwareUpdate Update{Services, Run, UpdateStatus, Upload};
    TContinuousUpdate Continuous{Services, UpdateStatus, Update, ButContUpdate};

    std::optional<std::string> Ping; // the answer; nothing while the device is away
    std::string CrcReply = R"({"response":{"data":[{"value":0}]}})";

  private:
    std::optional<std::string> Answer(const std::string& url) {
        const auto name = url.substr(url.rfind('/', url.find('?')) + 1);
        const std::string query = name.substr(0, name.find('.'));
        if (query == "ping")
            return Ping;
        if (query == "setpointReadValue")
            return CrcReply;
        std::string kind = query;
        std::int64_t answer = 0;
        if (query == "FlashWriteNostreamV2") {
            kind = RequestField(url, "nostreamstate");
            Crcs.push_back(std::stoi(RequestField(url, "blockCRC")));
            answer = std::stoll(RequestField(url, "blocknumber")) << 16;
        } else if (query == "FlashWriteNostream") {
            kind = RequestField(url, "nostreamstate");
            EXPECT_NE(url.find(R"("list":[{"payload":9}]}})"), std::string::npos);
        } else if (query == "prepareUpdate") {
            answer = 131072;
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
    std::size_t Taken = 0; // of the library's calls
};

} // namespace tidewell::test

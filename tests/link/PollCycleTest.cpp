#include "link/PollCycle.h"

#include "FakeNabto.h"
#include "core/Errors.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"
#include "support/IdleProgram.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string Values(const std::vector<int>& values) {
    std::string json;
    for (const int value : values)
        json += (json.empty() ? "" : ",") + ("{\"value\":" + std::to_string(value) + "}");
    return "{\"response\":{\"data\":[" + json + "]}}";
}

class TPollCycleTest : public testing::Test {
  protected:
    TPollCycleTest() {
        Library.Reply = [this](const std::string& url) -> std::optional<std::string> {
            const auto address = url.substr(url.find("\"address\":\"") + 11, 3);
            Asked.push_back(address);
            if (const auto action = During.find(Asked.size()); action != During.end())
                action->second();
            const auto reply = Replies.find(address);
            return reply == Replies.end() ? std::nullopt : std::optional(reply->second);
        };
        Cycle.OnCycleDone = [this] {
            Cycles.push_back(Cycle.NabtoResultstring);
            if (OnCycle)
                OnCycle();
        };
        Panel.DeviceList.Add({});
        SetQuestions("a=0;3;100;2;\nb=1;4;200;1\n");
        Replies = {{"100", Values({1, -2})}, {"200", Values({3})}};
    }
    void SetQuestions(const std::string& rows) {
        Cycle.SetQuestions(TIniFile("[NabtoDevice]\n" + rows).ReadSection("NabtoDevice"));
    }
    void Start() {
        Cycle.stopLog();
        Cycle.startLog();
        Asked.clear();
    }
    const std::vector<std::string>& Responses() { return Panel.DeviceList.GetDevice(0).ResponsList; }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    TIdleProgram Program;
    TUNabto Nabto{Program, Library, Dialogs, Time, Time, Files, "/app"};
    TModbusPanel Panel{Files, Time};
    std::string Device = "123456789012";
    TLabel LblNabto{"LblNabto"};
    TALed LedNabto{"LedNabto"};
    std::function<void()> OnCycle;
    std::vector<std::string> Cycles;
    TPollCycle Cycle{Time, Nabto, Panel, Device, LblNabto, LedNabto};
    std::map<std::string, std::string> Replies;          // by address
    std::map<std::size_t, std::function<void()>> During; // by number of the question since the start
    std::vector<std::string> Asked;
};

TEST_F(TPollCycleTest, GathersAWholeCycle) {
    Start();
    EXPECT_TRUE(LedNabto.Value());
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012");
    Time.Advance(1999);
    EXPECT_THAT(Asked, IsEmpty());
    Time.Advance(1);
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012 -> Get Data");
    Time.Advance(150);
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 3; "));
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012 -> Pause Data");
    EXPECT_EQ(LedNabto.TrueColor(), TALed::Green);
    EXPECT_THAT(Responses(), ElementsAre("1; -2; ", "3; "));
    EXPECT_THAT(Library.Calls,
                ElementsAre("nabtoRpcInvoke none nabto://123456789012/setpointReadValue.json?json="
                            R"({"request":{"address":"100","length":"2","obj":"0"}})",
                            "nabtoRpcInvoke none nabto://123456789012/datapointReadValue.json?json="
                            R"({"request":{"address":"200","length":"1","obj":"1"}})"));
    const bool lit = LedNabto.Value();
    Time.Advance(2000);
    EXPECT_NE(LedNabto.Value(), lit);
    Time.Advance(150);
    EXPECT_EQ(Cycles.size(), 2U);
    Cycle.stopLog();
    EXPECT_FALSE(LedNabto.Value());
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012");
    Time.Advance(10000);
    EXPECT_EQ(Asked.size(), 4U);
}

TEST_F(TPollCycleTest, WhatIsNoGoodReplyStartsAgainAtQuestion0) {
    struct TCase {
        std::optional<std::string> Reply; // to the second question
        std::string Response;
        TColor Color;
    };
    const std::string garbage(8'000'000, ';');
    const std::vector<TCase> cases{
        {R"({"error":{"body":"busy"}})", "error", TALed::Red},
        {Values({}), "", TALed::Green},
        {Values({1, 2}), "1; 2; ", TALed::Green},
        {std::nullopt, "No JS\r\n", TALed::Green},
        {"<b>;</b>", "No JS\r\n<b>;</b>", TALed::Green}, // as many ';' as values
        {R"({"response":{"status":"no;"}})", R"({"response":{"status":"no;"}})", TALed::Green},
        {garbage, "No JS\r\n" + garbage, TALed::Green},
    };
    for (const auto& [reply, response, color] : cases) {
        Replies.erase("200");
        if (reply)
            Replies["200"] = *reply;
        Start();
        Time.Advance(2100);
        EXPECT_THAT(Asked, ElementsAre("100", "200"));
        EXPECT_TRUE(Responses().at(1) == response);
        EXPECT_EQ(LedNabto.TrueColor(), color);
        EXPECT_EQ(LblNabto.Caption(),
                  color == TALed::Red ? "ID : 123456789012 -> Error Com" : "ID : 123456789012 -> Get Data");
        EXPECT_EQ(Cycle.NabtoResultstring, "");
        Replies["200"] = Values({7});
        Time.Advance(150); // at the question interval, without a pause
        EXPECT_THAT(Asked, ElementsAre("100", "200", "100", "200"));
        EXPECT_THAT(Cycles, ElementsAre("1; -2; 7; "));
        Cycles.clear();
    }
}

TEST_F(TPollCycleTest, OddQuestionLists) {
    SetQuestions("");
    Start();
    Time.Advance(2050);
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012 -> Pause Data");
    // An empty value ends the cycle; an unknown command asks nothing and stands for its own reply.
    SetQuestions("a=0;3;100;2;\nb=9;5;x;4;\nc=\nd=1;4;200;1;\n");
    Start();
    Time.Advance(2150);
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 9;5;x;4;"));
    EXPECT_THAT(Asked, ElementsAre("100"));
    SetQuestions("bad=0;3;100;two;\n");
    Start();
    try {
        Time.Advance(2050);
        FAIL() << "no exception";
    } catch (const EConvertError& error) {
        EXPECT_STREQ(error.what(), "Question bad=0;3;100;two;: 'two' is not a valid integer value");
    }
    Time.Advance(10000);
    EXPECT_THAT(Asked, IsEmpty());
}

TEST_F(TPollCycleTest, AStopDuringAQuestionEndsTheCycleWithIt) {
    During[1] = [&] { Cycle.stopLog(); };
    Start();
    Time.Advance(10000);
    EXPECT_THAT(Asked, ElementsAre("100"));
    EXPECT_THAT(Responses(), ElementsAre("1; -2; "));
    EXPECT_EQ(Cycle.NabtoResultstring, "");
    EXPECT_EQ(Cycle.queryCounter, 0U);
    EXPECT_FALSE(Cycle.timerLogger->Enabled() || Cycle.timerQuery->Enabled());
}

// The reply that comes after the change belongs to a cycle that is over.
TEST_F(TPollCycleTest, ACycleBegunAnewDuringAQuestionTakesNothingFromTheOldOne) {
    During[2] = [&] {
        Cycle.stopLog();
        Cycle.startLog();
    };
    Start();
    Time.Advance(2100 + 1999);
    EXPECT_THAT(Asked, ElementsAre("100", "200"));
    Time.Advance(151);
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 3; "));
    Start();
    During[2] = [&] {
        SetQuestions("a=0;3;200;1;\n");
        Panel.DeviceList.Clear();
    };
    Time.Advance(2200);
    EXPECT_THAT(Asked, ElementsAre("100", "200", "200"));
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 3; ", "3; "));
}

// A dialog that is opened by a click before or behind the request of a question, and stays for a while.
TEST_F(TPollCycleTest, GoesOnBelowADialogThatHoldsAQuestionUp) {
    for (const bool asked : {false, true}) {
        Start();
        Time.Advance(2050);
        During[2] = [&] {
            Time.Sleep(asked ? 10 : 0);
            Replies["200"] = R"({"error":{"body":"late"}})";
        };
        Time.After(asked ? 55 : 50, [&] {
            Time.Advance(90);
            During.clear();
            Replies = {{"100", Values({10, -20})}, {"200", Values({30})}};
            Time.Advance(5000);
            EXPECT_THAT(Cycles, ElementsAre("10; -20; 30; ", "10; -20; 30; ", "10; -20; 30; "));
            EXPECT_EQ(Asked.size(), asked ? 8U : 7U);
        });
        Time.Advance(60);
        EXPECT_EQ(Asked.size(), asked ? 8U : 7U); // the old question is not asked behind it
        EXPECT_EQ(LedNabto.TrueColor(), TALed::Green);
        Time.Advance(2150 * 3);
        EXPECT_EQ(Cycles.size(), 6U); // one cycle goes on, not two
        EXPECT_EQ(std::ranges::count(Cycles, "10; -20; 30; "), 6);
        Replies = {{"100", Values({1, -2})}, {"200", Values({3})}};
        Cycles.clear();
    }
    // A slow device is not a dialog, and what a dialog starts goes on by itself.
    During[1] = During[2] = [&] { Time.Sleep(1000); };
    Start();
    Time.Advance(2000 + 2 * 1050 + 50);
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 3; "));
    During = {{2, [&] { Time.Sleep(10); }}};
    Start();
    Time.After(2105, [&] {
        Time.Advance(90);
        Cycle.stopLog();
        Cycle.startLog();
        Time.Advance(1000);
    });
    Time.Advance(2110);
    EXPECT_EQ(Asked.size(), 2U);
    Time.Advance(1139);
    EXPECT_EQ(Cycles.size(), 1U);
    Time.Advance(20);
    EXPECT_EQ(Cycles.size(), 2U);
}

TEST_F(TPollCycleTest, OnlyTheDeviceInForceSpeaks) {
    During[2] = [&] {
        Device = "999999999999";
        Replies["200"] = R"({"error":{"body":"not me"}})";
    };
    Start();
    Time.Advance(2100);
    EXPECT_EQ(LblNabto.Caption(), "ID : 123456789012 -> Get Data");
    EXPECT_NE(LedNabto.TrueColor(), TALed::Red);
    EXPECT_THAT(Responses(), ElementsAre("1; -2; "));
    Replies["200"] = Values({3});
    Time.Advance(150);
    EXPECT_THAT(Asked, ElementsAre("100", "200", "100", "200")); // no row of two devices
    EXPECT_THAT(Cycles, ElementsAre("1; -2; 3; "));
}

TEST_F(TPollCycleTest, ACycleThatFailedDuringAQuestionOfTheOldOneStaysEnded) {
    During[1] = [&] {
        OnCycle = [] { throw TError("disk full"); };
        Cycle.startLog();
        EXPECT_THROW(Time.Advance(2150), TError);
    };
    Start();
    Time.Advance(20000);
    EXPECT_THAT(Asked, ElementsAre("100", "100", "200"));
}

TEST_F(TPollCycleTest, WhatTakesTheCycleMayStopRestartOrFail) {
    OnCycle = [&] { Cycle.stopLog(); };
    Start();
    Time.Advance(2150);
    EXPECT_FALSE(Cycle.timerLogger->Enabled() || Cycle.timerQuery->Enabled());
    // A long handler that lets a new cycle run half way.
    OnCycle = [&] {
        OnCycle = nullptr;
        Cycle.startLog();
        Time.Advance(2050);
    };
    Start();
    Time.Advance(2150);
    EXPECT_EQ(Cycle.NabtoResultstring, "1; -2; ");
    Time.Advance(100);
    EXPECT_EQ(Cycles.back(), "1; -2; 3; ");
    OnCycle = [] { throw TError("disk full"); };
    std::string told;
    Cycle.OnFailed = [&](const std::string& reason) { told = reason; };
    Start();
    EXPECT_THROW(Time.Advance(2150), TError);
    EXPECT_FALSE(Cycle.timerLogger->Enabled() || Cycle.timerQuery->Enabled() || Cycle.Dologging);
    EXPECT_EQ(told, "disk full");
    OnCycle = nullptr;
    Start();
    Time.Advance(2150);
    EXPECT_EQ(Cycles.back(), "1; -2; 3; ");
}

} // namespace

} // namespace tidewell::test

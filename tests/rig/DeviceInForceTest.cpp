#include "rig/Journey.h"

namespace tidewell::test {
namespace {

// The driver was left with another device, and the linked one does not answer: each action is left out.
TEST(TDeviceInForce, IsTakenByEachActionBeforeItsFirstStep) {
    auto cases = ParseJourney(
        "== all\n"
        "edit list.set = 1;\\r\\n2;\\r\\n3;\\r\\nSetpointName;F;RawValue;\\r\\nN;F;3;0;9;0;0;1;0;\\r\\n\n"
        "start linked\n"
        "menu Setup1\ntype txtRemote 410000000002\nclick butping\nclose SetupForm\n"
        "menu Nabtodebug1\ntype RErrorlogLength 2\npick DayTracker 0 1\n"
        "fault aria1 NoAnswer=on; query=ping.json\n"
        "click TrafficButton\nclick but_errorlog\nclick but_swupdate\n"
        "click BtnUpdate\nclick ButErorlog\nclick ButFlashDatalog\nclick DT_GetData\n"
        "click BtnReadFlash\nclick butGetEepromValues\nclick hidden Button1\n"
        "click hidden ExtendedSystemVersion\nclick hidden ButContUpdate\nmenu FlasDatalog1\n"
        "pick SetpointTreeView 0 -1 right\nmenu Savesetpoints1\n"
        "pick SetpointTreeView 0 -1 right\nmenu Loadsetpointfromfile1\nanswer list.set\n"
        "click ButWriteSetpoints\nclick ButCancel\n");
    TJourney journey(cases[0]);
    std::vector<std::string> calls;
    journey.World.OnExchange = [&calls](const std::string& call) { calls.push_back(call); };
    const std::string box = "The device 410000000001.hv.example does not answer. Nothing was sent to it.";
    bool silent = false;
    std::set<std::string> seen;
    journey.OnStep = [&] {
        const std::string step = journey.StepText();
        const bool asks =
            step.starts_with("click") || (step.starts_with("menu ") && step != "menu Loadsetpointfromfile1");
        if (silent && asks && step != "click ButCancel" && seen.insert(step).second) {
            EXPECT_EQ(calls, (std::vector<std::string>{"GET /devices/410000000001/0/Nabtouser [token1] 200",
                                                       "ping 410000000001"}))
                << step;
            EXPECT_EQ(journey.Boxes, std::vector{box}) << step;
            const auto& events = journey.World.Program->FormMain.MemoEventLog.Lines();
            EXPECT_EQ(events.back(), "Nothing was sent: " + box);
        }
        silent = silent || step.starts_with("fault");
        calls.clear();
        journey.Boxes.clear();
    };
    journey.Play();
    EXPECT_EQ(seen.size(), 15U);
    EXPECT_TRUE(journey.World.Files.List("/t/log/userlog", "*").empty());
}

} // namespace
} // namespace tidewell::test

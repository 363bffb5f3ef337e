#include "core/Guard.h"
#include "rig/Journey.h"
#include "rig/UpdateClaim.h"

#include <cctype>

// Every journey again, with one thing going wrong at every place where it can. Only rules are checked.
namespace tidewell::test {
namespace {

enum class EMishap { Close, RefusedWrite, LostExchange, NoExchange };

// The places of one kind that a journey comes through, and the one at which something is done.
class TPlaces {
  public:
    // before: what was asked last, so that a loop counts as one place.
    void Pass(const std::string& where, const std::function<void()>& mishap) {
        std::string name = where;
        std::erase_if(name, [](unsigned char character) { return std::isdigit(character) != 0; });
        Names.push_back(name);
        if (At == Names.size() - 1)
            mishap();
    }
    std::vector<std::string> Names;
    std::size_t At = static_cast<std::size_t>(-1);
};

// One journey with one mishap, and the rules.
class TSweep {
  public:
    TSweep(TJourneyCase journey, EMishap mishap, std::size_t at = static_cast<std::size_t>(-1))
        : Case(std::move(journey)), Mishap(mishap), Journey(Case) {
        Places.At = at;
        Journey.Lenient = true;
        Listen();
        Journey.Play();
        Check();
    }
    TPlaces Places;

  private:
    std::string Where(const std::string& kind) const {
        return Journey.StepText() + "|" + kind + "|" + LastCall.substr(0, LastCall.find(' '));
    }
    void Listen() {
        TWorld& world = Journey.World;
        world.OnExchange = [this](const std::string& call) {
            LastCall = call;
            if (call.starts_with("setpointWriteValue "))
                Writes.push_back(call.substr(call.find(' ') + 1));
            // An interface definition goes to no device.
            const bool isEnd = call.starts_with("StreamClose") || call.starts_with("interface ") ||
                               call == "CloseSession" || call == "Shutdown";
            if (Closed && !isEnd && Journey.World.Program)
                After.push_back("asked: " + call);
        };
        world.Time.OnWait = [this] {
            if (Mishap == EMishap::Close)
                Places.Pass(Where("wait"), [this] { CloseSoon(); });
            if (++Waits == 100000) // a wait that only the end of the program ends
                CloseSoon();
        };
        if (Mishap == EMishap::Close) {
            Journey.OnDialog = [this] {
                Places.Pass(Where("dialog"), [this] {
                    ClosedBelow = true;
                    Close();
                });
            };
        } else if (Mishap == EMishap::RefusedWrite) {
            world.Files.OnWrite = [this](const std::filesystem::path& path) {
                if (path.string().starts_with("/t/nabto_config")) // which is the library's
                    return;
                Places.Pass(Where(path.parent_path().string()), [&] {
                    Refused = path.string();
                    throw EInOutError("Cannot write " + path.string() + full);
                });
            };
        } else {
            Journey.OnDialog = [this] { // a logon of the command line is asked for without end
                if (Journey.Boxes.size() > 30)
                    Close();
            };
            world.BeforeExchange = [this] {
                Journey.World.Online = Online;
                Places.Pass(Where("exchange"), [this] { Lose(); });
            };
        }
        Journey.OnStep = [this] { CheckScreen(); };
        Journey.OnEnd = [this] { End(); };
    }
    void CloseSoon() {
        Journey.World.Time.After(0, [this] { Close(); });
    }
    void Close() {
        if (!Journey.World.Program || Journey.Ended || !Journey.World.Program->FormMain.IsOpen())
            return;
        TProgram& program = *Journey.World.Program;
        program.CloseDown.AskBeforeClose = false; // as when the system ends the program
        for (int attempt = 0; attempt < 2 && program.FormMain.Visible();
             ++attempt) // of which the first may fail
            RunGuarded(Journey, [&program] { program.FormMain.Close(); });
        Journey.Ended = true;
        Closed = true;
        Boxes = Journey.Boxes.size();
    }
    void Lose() {
        Journey.World.Online = false;
        Online = Mishap == EMishap::LostExchange;
        TFault fault{.Kind = EFault::NoAnswer, .Number = 0, .Text = {}, .When = {}};
        if (Mishap == EMishap::LostExchange)
            fault.When.Times = 1;
        else // some waits of an update end with the program alone
            Journey.World.Time.After(600000, [this] { Close(); });
        for (const char* name : {"aria1", "hub1", "aria2"})
            if (auto* const controller = Journey.World.Nabto.FindController(name))
                controller->Faults.Add(fault);
    }
    // The button that tells of the log is true.
    void CheckScreen() {
        const TProgram& program = *Journey.World.Program;
        RefusalTold |= TellsRefusal(program.FormMain.MemoEventLog.Lines()) ||
                       TellsRefusal(program.NabtoDevice.memoDebug.Lines());
        CheckWrites();
        EXPECT_EQ(FalseUpdateClaim(Journey.World), "");
        const auto color = program.FormMain.TrafficButton.Color();
        if (color && color->Green() != 0 && color->Red() == 0 && !Journey.World.Application.IsTerminated) {
            EXPECT_TRUE(program.LiveLog.DatalogOn && program.NabtoDevice.Cycle.Dologging)
                << Journey.StepText();
        }
    }
    static bool TellsRefusal(const std::vector<std::string>& lines) {
        return std::ranges::any_of(lines, [](auto& line) { return line.find(full) != std::string::npos; });
    }
    // What is told as written stands in the controller.
    void CheckWrites() {
        static constexpr const char* done =
            "Setpointwrite is done. Number of write Errors 0 Number of Read error 0";
        for (; BoxesSeen < Journey.Boxes.size(); ++BoxesSeen) {
            if (!Journey.Boxes[BoxesSeen].starts_with(done))
                continue;
            std::map<std::string, int> values;                         // by device, object and address
            for (const std::string& write : std::exchange(Writes, {})) // "410000000001 0.100.5"
                values[write.substr(0, write.rfind('.'))] = std::stoi(write.substr(write.rfind('.') + 1));
            for (const auto& [place, value] : values) {
                const auto blank = place.find(' ');
                const auto dot = place.find('.');
                auto* const controller = Journey.World.Nabto.FindController(place.substr(0, blank));
                const auto held = controller->Values.Read(
                    ETable::Setpoint, {std::stoi(place.substr(blank + 1)), std::stoi(place.substr(dot + 1))},
                    Journey.World.Nabto.NowMs());
                EXPECT_EQ(held.value_or(-1) & 0xFFFF, value) << place << " was told as written";
            }
        }
    }
    void End() {
        if (!Journey.World.Program || !Closed)
            return;
        EXPECT_TRUE(Journey.World.Application.IsTerminated);
        Journey.World.Time.OnWait = nullptr;
        Journey.World.Time.Advance(600000);
        EXPECT_TRUE(Journey.World.Time.Idle()) << "a timer runs behind the close";
        Journey.World.Program->Finish();
        // Below a dialog the port answers what is still shown.
        for (std::size_t i = Boxes; i < Journey.Boxes.size() && !ClosedBelow; ++i)
            EXPECT_THAT(Journey.Boxes[i], testing::HasSubstr(full));
        EXPECT_EQ(After, std::vector<std::string>()) << "behind the close";
    }
    void Check() const {
        const TWorld& world = Journey.World;
        EXPECT_EQ(world.Nabto.OpenStreams(), 0U);
        EXPECT_EQ(world.Nabto.OpenSessions(), 0U);
        EXPECT_EQ(world.Files.Torn, std::vector<std::filesystem::path>());
        EXPECT_TRUE(Refused.empty() || RefusalTold || TellsRefusal(Journey.Boxes) ||
                    TellsRefusal(world.Application.Errors))
            << "nobody is told that " << Refused << " was not written";
    }

    static constexpr const char* full = ": No space left on device";

    TJourneyCase Case;
    EMishap Mishap;
    std::string LastCall;
    std::vector<std::string> Writes; // since the last box of a whole list
    std::size_t BoxesSeen = 0;
    int Waits = 0;
    bool Online = true;
    bool Closed = false;
    bool ClosedBelow = false;       // a dialog
    std::string Refused;            // file
    bool RefusalTold = false;       // in the event log or the memo of the tools
    std::size_t Boxes = 0;          // at the close
    std::vector<std::string> After; // it, what was asked
    TJourney Journey;               // goes first, and tells the others its end
};

// Each place once, however many journeys come through it; with TIDEWELL_SWEEP_ALL set each in each of them.
void Sweep(EMishap mishap) {
    std::set<std::string> seen;
    std::vector<TJourneyCase> cases;
    for (const auto& path : AllJourneys())
        std::ranges::move(ReadJourney(path), std::back_inserter(cases));
    for (const TJourneyCase& one : cases) {
        const TSweep untouched(one, mishap);
        std::set<std::string> here;
        for (std::size_t at = 0; at < untouched.Places.Names.size(); ++at) {
            const std::string& name = untouched.Places.Names[at];
            const bool isNew = std::getenv("TIDEWELL_SWEEP_ALL") != nullptr ? here.insert(name).second
                                                                            : seen.insert(name).second;
            if (!isNew)
                continue;
            SCOPED_TRACE(one.Title + ": " + name);
            const TSweep swept(one, mishap, at);
        }
    }
    std::cout << seen.size() << " places\n";
}

TEST(TSweeps, CloseTheProgramAtEachWaitAndDialog) {
    Sweep(EMishap::Close);
}
TEST(TSweeps, RefuseEachWrite) {
    Sweep(EMishap::RefusedWrite);
}
TEST(TSweeps, LoseEachExchange) {
    Sweep(EMishap::LostExchange);
}
TEST(TSweeps, LoseEachExchangeForGood) {
    Sweep(EMishap::NoExchange);
}

} // namespace
} // namespace tidewell::test

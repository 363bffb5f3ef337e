#include "core/Numbers.h"
#include "scenario/SetpointProgram.h"
#include "setpoints/SetpointRecords.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <span>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string writeQuery = "setpointWriteValue.json";

class TSetpoints : public TSetpointProgram {
  protected:
    // Each record of a setpoint file of the Aria tells what the controller holds, as far as it is to.
    std::size_t ExpectFileHeld(const std::string& bytes, const std::function<bool(std::int32_t)>& isTo) {
        const auto lines = SplitLines(bytes);
        std::size_t count = 0;
        for (std::size_t i = SetpointHeadLines; i < lines.size(); ++i) {
            const std::int32_t address = ToInteger(GetRowField(lines[i], 7)) - 40001;
            if (!isTo(address))
                continue;
            EXPECT_EQ(GetRowField(lines[i], 2), Held(address)) << lines[i];
            ++count;
        }
        return count;
    }
};

TEST_F(TSetpoints, AreSavedEditedAndLoadedBack) {
    const auto all = [](std::int32_t) { return true; };
    Start();
    RunUntilRows(2);
    const std::string saved = Save();
    EXPECT_FALSE(Program->LiveLog.DatalogOn);
    ExpectGolden("aria450.csv", saved);
    EXPECT_EQ(ExpectFileHeld(saved, all), 76U);

    Dialogs.ExpectMessage(Language("HeadAppl", "MessageClearGraphData"), EModalResult::No);
    Main().TrafficButton.Click();
    RunUntilRows(Program->LogBuffers.DatalogCount + 1);
    struct {
        int Group; // in the tree
        std::string Name, Before, Entry, Wire, After;
    } const edits[] = {
        {2, "301 Room temperature", "21.5", "22,5", "160=225", "22.5"},
        {2, "304 Correction of the room sensor", "-0.5", "-1.5", "163=65521", "-1.5"},
        {2, "306 Heating only below outdoor", "16", "-10", "165=40", "-10"},
        {2, "316 Slope of the supply air curve", "-1.20", "1.005", "175=101", "1.01"},
        {0, "114 Restart delay after mains failure", "30", "125", "113=12", "120"},
        {0, "111 Building mark (two characters)", "A2", "Zz", "110=23162", "Zz"},
        {0, "112 Zone mark (two characters)", "Z2", "Zz", "111=31322", "Zz"},
        {0, "109 Functions in use", "00000101  11111111", "1535", "108=1535", "00000101  11111111"},
    };
    std::vector<std::string> wire;
    for (const auto& edit : edits) {
        SCOPED_TRACE(edit.Name);
        Page().SetpointTreeView.SetSelected(TTreeView::TSelection{0, edit.Group});
        Page().SetpointTreeView.OnClick();
        const auto found = std::ranges::find(Page().SetpointValues, edit.Name, &TListRow::Name);
        ASSERT_NE(found, Page().SetpointValues.end());
        const int row = static_cast<int>(found - Page().SetpointValues.begin()) + 1;
        const auto value = [&] { return Page().SetpointGridDrawCell(1, row).Text; };
        EXPECT_EQ(value(), edit.Before);
        Dialogs.ExpectForm("InputDialog", [&](TForm& form) {
            Dialog().EValue.Enter(edit.Entry);
            PressReturn(form);
            EXPECT_FALSE(form.Visible());
        });
        Page().SetpointGrid.OnDblClick(row);
        wire.push_back(edit.Wire);
        RunUntilRows(Program->LogBuffers.DatalogCount + 2); // one cycle may be under way
        EXPECT_EQ(value(), edit.After);
    }
    EXPECT_EQ(Writes(), wire);
    const std::string edited = Save();
    EXPECT_NE(edited, saved);
    ExpectFileHeld(edited, all);

    Libraries.Calls.clear();
    Load(saved, [this](TLoadSetpoints& form) {
        EXPECT_EQ(form.Caption(), "Created at : 02-03-2026; Device name : Device Aria 450;");
        Dialogs.ExpectMessage(Result(0, 0));
        form.ButWriteSetpoints.Click();
        EXPECT_TRUE(form.ButPanel.Visible());
    });
    EXPECT_EQ(Writes().size(), 76U);
    ExpectFileHeld(saved, all);
    ExpectGolden("result.csv", Files.Read(ResultPath()));
    EXPECT_EQ(Save(), saved);
    Close();
    ExpectGolden("eventlog.log", Files.Read(FilesBelow("/t/log/systemlog").front()));
}

// Only addresses count: what the other model has is written, the rest is told to have failed.
TEST_F(TSetpoints, OfAnotherModelAreWrittenAsFarAsTheirAddressesAreKnown) {
    Start();
    const std::string saved = Save();
    Close();
    Libraries.Calls.clear();
    Arguments[1] = "410000000002"; // Loft 120
    Start();
    Load(saved, [this](TLoadSetpoints& form) {
        Dialogs.ExpectMessage(Result(54, 0));
        form.ButWriteSetpoints.Click();
        EXPECT_EQ(std::ranges::count(form.ResultList.Rows(), failedColor,
                                     [](const auto& row) { return row.Color; }),
                  54);
    });
    EXPECT_EQ(Writes().size(), 22U);
    EXPECT_EQ(ExpectFileHeld(saved, [this](std::int32_t address) { return Held(address) != "none"; }), 22U);
    Close();
}

// A record of a list for the Aria.
struct TRecord {
    std::string ModbusAdr, RawValue;
    std::int32_t Address = -1; // in the controller; none for a record that cannot be written
    std::string Structnumber = {};
};

class TSetpointFaults : public TSetpoints {
  protected:
    TSetpointFaults() {
        Edit(SystemFile, "PauseTime=1000", "PauseTime=1");
        Edit(SystemFile, "DelayBetweenQuestions=50", "DelayBetweenQuestions=1");
        for (std::size_t errors = 0; errors <= List.size(); ++errors)
            for (std::size_t readErrors = 0; readErrors <= List.size(); ++readErrors)
                Dialogs.AllowMessage(Result(errors, readErrors));
    }
    std::string ListBytes() const {
        std::string bytes = "1;\r\n2;\r\n3;\r\nSetpointName;F;RawValue;\r\n";
        for (const TRecord& record : List)
            bytes += "N;F;" + record.RawValue + ";0;9;0;0;" + record.ModbusAdr + ";0;\r\n";
        return bytes;
    }
    // Puts the controller into its first state, with one fault from now on, and writes the list.
    void Write(TLoadSetpoints& form, const TFault& fault) {
        Controller().Faults.Replace({fault});
        for (const std::int32_t address : {100, 101, 163})
            Controller().Values.Write({0, address}, 1);
        // Values that move could use up the retries of the read-back.
        for (const auto& [table, first, count] :
             std::vector<std::tuple<ETable, TRegisterAddress, std::int32_t>>{
                 {ETable::Datapoint, {0, 0}, 20},
                 {ETable::Datapoint, {0, 40}, 18},
                 {ETable::Setpoint, {1, 300}, 12}})
            Controller().Values.Add({.Table = table,
                                     .First = first,
                                     .Count = count,
                                     .Sources = {{.First = 5}},
                                     .RefusedStatus = {},
                                     .WrittenAt = {}});
        Libraries.Calls.clear();
        Time.Advance(1000); // another second, another result file
        form.ButWriteSetpoints.Click();
    }
    // What the result must tell of each record, by the controller's memory. refused: the write, counted from
    // 0, that was answered with another status.
    void ExpectToldByMemory(const TLoadSetpoints& form, std::optional<std::size_t> refused) {
        std::vector<std::string> lines{"compare written values with read values"};
        std::size_t errors = 0;
        std::size_t readErrors = 0;
        std::size_t sent = 0;
        for (std::size_t i = 0; i < List.size(); ++i) {
            const TRecord& record = List[i];
            const bool failed = record.Address < 0 || sent++ == refused;
            EXPECT_EQ(form.ResultList.Rows().at(i).Color, failed ? failedColor : writtenColor) << i;
            if (failed) {
                ++errors;
                lines.push_back("Madr : " + record.ModbusAdr +
                                " result : Read skipped since write went wrong");
                continue;
            }
            const std::string held = Held(record.Address);
            readErrors += held == record.RawValue ? 0 : 1;
            lines.push_back("Madr : " + record.ModbusAdr + " Structnumber : " + record.Structnumber +
                            " written value: " + record.RawValue + " read value: " + held +
                            " result : Write/Read " + (held == record.RawValue ? "success" : "Error"));
        }
        EXPECT_EQ(Dialogs.Shown.back().Text, Result(errors, readErrors));
        const auto file = ResultLines();
        EXPECT_EQ(file.back(), Dialogs.Shown.back().Text);
        ASSERT_GE(file.size(), List.size() + lines.size());
        EXPECT_TRUE(std::ranges::equal(lines, std::span(file).subspan(List.size(), lines.size())))
            << testing::PrintToString(file);
    }
    const std::vector<TRecord> List{{"40101", "3", 100, "3"},
                                    {"40164", "-7", 163, "38"},
                                    {"41000", "1"},
                                    {"40102", "007", 101, "4"},
                                    {"x", "1"},
                                    {"40101", "5", 100, "3"}};
    static constexpr std::size_t Sent = 4;
};

TEST_F(TSetpointFaults, TheCountsTellWhatTheControllerHolds) {
    struct TCase {
        EFault Kind;
        std::int64_t Number = 0;
        std::string Text = {};
        bool OtherStatus = false;
    };
    const TCase ofWrites[] = {
        {EFault::RefuseWrite, 0, "", true},
        {EFault::RefuseWrite, 2, "", true},
        {EFault::RefuseWrite, 1}, // refused with the status of a good write
        {EFault::ChangeAfterWrite, 1},
        {EFault::ChangeAfterWrite, -2}, // the last write then holds what the first one wrote
        {EFault::Garbage, 0, R"({"response":{"status":3}})", true},
        {EFault::Garbage, 0, R"({"response":{}})", true}, // tells nothing
    };
    const TCase ofReads[] = {{EFault::WrongCount, 1}, {EFault::WrongCount, -1}};
    const TCase ofBoth[] = {{EFault::Error, 0, "Device busy"},
                            {EFault::NoAnswer},
                            {EFault::Garbage, 0, "<html>"},
                            {EFault::Huge, 100000},
                            {EFault::Latency, 3000}};
    Start();
    Load(ListBytes(), [&](TLoadSetpoints& form) {
        const auto tryAt = [&](const TCase& test, const std::string& query, std::size_t positions) {
            for (std::size_t position = 0; position < positions; ++position) {
                SCOPED_TRACE(query + " " + std::to_string(position) + ": fault " +
                             std::to_string(static_cast<int>(test.Kind)) + " " + test.Text);
                Write(form, {test.Kind, test.Number, test.Text, When(query, position, 1)});
                EXPECT_EQ(Writes().size(), Sent);
                ExpectToldByMemory(form, test.OtherStatus ? std::optional(position) : std::nullopt);
            }
        };
        const auto ofReading = [&](const TCase& test) { // of each question of the three cycles
            tryAt(test, "setpointReadValue.json", 3 * 6);
            tryAt(test, "datapointReadValue.json", 3 * 2);
        };
        std::ranges::for_each(ofWrites, [&](const TCase& test) { tryAt(test, writeQuery, Sent); });
        std::ranges::for_each(ofReads, ofReading);
        for (const TCase& test : ofBoth) {
            tryAt(test, writeQuery, Sent);
            ofReading(test);
        }
        // The link is lost for 30 seconds, from the first write on or from any later query.
        for (std::size_t position = 0; position < Sent + 3 * 8; ++position) {
            SCOPED_TRACE("link lost at query " + std::to_string(position));
            Write(form, {EFault::NoAnswer, 0, {}, When({}, position, {}, Nabto.NowMs() + 31000)});
            ExpectToldByMemory(form, {});
        }
        // Values that are stored, but answered with another status, are not compared.
        Controller().WriteStatus = 0;
        Write(form, {EFault::Latency, 1, {}, When({})});
        EXPECT_EQ(Dialogs.Shown.back().Text, Result(List.size(), 0));
        EXPECT_EQ(Held(100), "5");
    });
    Close();
}

// With a silent device or without the cloud, what waits says so, and ends when the user gives up.
TEST_F(TSetpointFaults, ThatStayAreShownUntilTheUserGivesUp) {
    const TFault silent{EFault::NoAnswer, 0, {}, When({})};
    Start();
    Controller().Faults.Replace({silent});
    Time.After(20000, [this] {
        EXPECT_TRUE(Main().ReadBackPanel.Visible());
        EXPECT_FALSE(Page().Savesetpoints1.Enabled());
        EXPECT_EQ(Main().LblReadBack.Caption(), "Reading the device: cycle 1 of 3, question 1 of 8");
        Main().ButStopReadBack.Click();
    });
    SaveInVain();
    EXPECT_FALSE(Main().ReadBackPanel.Visible());
    EXPECT_EQ(Main().MemoEventLog.Lines().back(), "Setpoints not saved: the reading was ended");
    EXPECT_THAT(FilesBelow("/t/setpoint"), IsEmpty());
    Load(ListBytes(), [&](TLoadSetpoints& form) {
        const auto writeInVain = [&](const TFault& fault, const std::string& held) {
            Write(form, fault);
            EXPECT_EQ(Dialogs.Shown.back().Text, Result(2, List.size()));
            EXPECT_EQ(ResultLines().at(List.size()),
                      "Error reading device set/datapoint No compare of setpoints done");
            EXPECT_EQ(Held(100), held);
        };
        Time.After(60000, [&form] { form.ButEndReadBack.Click(); });
        writeInVain(silent, "1");
        Online = false; // the log does not start
        writeInVain({EFault::Latency, 1, {}, When({})}, "5");
    });
    Close();
}

TEST_F(TSetpointFaults, TheCloseOfTheProgramEndsARunAndLeavesItsResult) {
    struct {
        std::string Slow; // query
        bool Load;
        std::vector<std::string> Writes;
        std::size_t Errors, ReadErrors;
    } const cases[] = {
        {writeQuery, true, {"100=3", "163=65529"}, 0, 2},
        {"setpointReadValue.json", true, {"100=3", "163=65529", "101=7", "100=5"}, 2, 6},
        {"setpointReadValue.json", false, {}, 0, 0},
    };
    for (const auto& c : cases) {
        Start();
        Controller().Faults.Replace({{EFault::Latency, 700, {}, When(c.Slow)}});
        Libraries.Calls.clear();
        std::size_t shown = 0;
        const auto closeSoon = [this, &shown] {
            Time.After(1000, [this, &shown] {
                Main().Close();
                EXPECT_TRUE(Application.IsTerminated);
                shown = Dialogs.Shown.size();
            });
        };
        if (c.Load) {
            Load(ListBytes(), [&](TLoadSetpoints& form) {
                closeSoon();
                form.ButWriteSetpoints.Click();
                EXPECT_EQ(ResultLines().back(), Result(c.Errors, c.ReadErrors));
            });
        } else {
            closeSoon();
            SaveInVain();
        }
        EXPECT_EQ(Writes(), c.Writes);
        const std::size_t calls = Libraries.Calls.size();
        Time.Advance(600000);
        Program->Finish();
        EXPECT_EQ(Libraries.Calls.size(), calls);
        EXPECT_EQ(Dialogs.Shown.size(), shown) << testing::PrintToString(Dialogs.Texts());
        EXPECT_EQ(FilesBelow("/t/log/systemlog").size(), c.Load ? 3U : 2U); // with event log and datalog
        EXPECT_THAT(FilesBelow("/t/setpoint"), IsEmpty());
        Program.reset();
        for (const auto& path : FilesBelow("/t/log"))
            Files.Content.erase(path);
    }
}

} // namespace
} // namespace tidewell::test

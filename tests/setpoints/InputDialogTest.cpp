#include "setpoints/InputDialog.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "link/FakeNabto.h"
#include "link/Nabto.h"
#include "link/NabtoDevice.h"
#include "model/ModbusPanel.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct THost : TNabtoDevice::IHost, TInputDialog::IHost {
    void UpdateTimerTimer() override {}
    void StopLog() override {}
    void Setup1Click() override {}
    void AddEventLog(const std::string&) override {}
    bool ShowButtonDevid() const override { return false; }
    bool ErrorLogVisible() const override { return false; }
    bool FormOpen() const override { return true; }
    void RepaintStatusBar() override { ++Repaints; }
    int Repaints = 0;
};

// A list row with its shown limits.
struct TSetpoint {
    std::string Min = "0";
    std::string Max = "65535";
    std::string Decimal = "0";
    std::string Offset = "0";
    std::string Code = "1";
    std::string Bits = {};
    std::string WriteType = " 2 ";
    std::string Text() const {
        return "0; Supply air ; 512 ; " + Min + ";" + Max + " ; " + Decimal + ";" + Offset + ";40101;3; " +
               Code + ";" + Bits + ";;;;" + WriteType + ";Air;";
    }
};

class InputDialog : public testing::Test {
  protected:
    InputDialog() {
        Files.Put("/t/s.inn", "[CommInitNabto]\nEnabled=TRUE\n");
        Files.Put("/t/e.lng",
                  "[InputDialog]\nHeader=Change\nButOk=Send\nValueLab=Value\nMessageWrongValue=Wrong\n");
        Device.device = "d";
        Device.initialized = true;
        TMDevice other, selected;
        other.ReadList = {"29;3;0;1;L;Other;"};
        selected.ReadList = {" 30 ;3;0;1;L;Main;", "31;3;0;1;L;Main;"};
        Panel.DeviceList.Add(other);
        Panel.DeviceList.Add(selected);
        Panel.SelectedDevice = 1;
        Dialog.FormCreate(TIniFile(Files, "/t/e.lng"));
    }
    void Open(const TSetpoint& setpoint, const std::string& value = "", bool selectAll = true) {
        Dialog.CurrentSetpointSpecific = setpoint.Text();
        Dialog.CurrentDatavalue = value;
        Dialog.ValueSelectAll = selectAll;
        Dialog.Hide();
        Dialogs.Show(Dialog);
    }
    static void Press(TForm& form, EKey key) {
        bool handled = false;
        form.OnKeyDown(key, handled);
        EXPECT_TRUE(handled);
    }
    // Types and presses Enter; the value on the wire, or the message.
    std::string Enter(const std::string& text) {
        Dialog.EValue.Enter(text);
        Library.Calls.clear();
        Press(Dialog, EKey::Return);
        EXPECT_EQ(Dialog.Visible(), Library.Calls.empty());
        if (Library.Calls.empty())
            return Dialogs.Shown.empty() ? "nothing" : Dialogs.Shown.back().Text;
        const std::string& call = Library.Calls.back();
        const std::string mark = R"("value":")";
        const std::size_t begin = call.find(mark) + mark.size();
        return call.substr(begin, call.find('"', begin) - begin);
    }
    std::string Digits() const {
        std::string digits;
        for (std::size_t column = 0; column < 16; ++column)
            digits += Dialog.binaryvaluegrid.Cells.Cell(column, 1);
        return digits;
    }
    void Click(int column, int row, int x, int y) {
        Dialog.binaryvaluegrid.OnClick({column, row, x, y, {column * 25, 50, column * 25 + 25, 90}});
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    THost Host;
    TCurrentInifilesPath Paths{"/t/s.inn", {}, {}, {}, "/t"};
    TModbusPanel Panel{Files, Time};
    TUNabto Nabto{Library, Dialogs, Time, Time, Files, "/t"};
    TNabtoDevice Device{Dialogs, Time, Time, Files, Paths, Nabto, Panel, Host};
    TMemo Log{"MemoEventLog"};
    TInputDialog Dialog{{Dialogs, Panel, Device, Log, Host}};
};

const std::string wrong = "Wrong";

std::string Error(int position) {
    return wrong + " ErrorNumber: " + std::to_string(position);
}

} // namespace

TEST_F(InputDialog, ConvertsChecksAndSends) {
    const TSetpoint tenths{.Min = "0.0", .Max = "10.0", .Decimal = " 1 "};
    const TSetpoint hundredths{.Min = "0.00", .Max = "1.16", .Decimal = "2"};
    const TSetpoint exact{.Min = "0.15", .Max = "0.15", .Decimal = "2"};
    const TSetpoint tens{.Min = "0", .Max = "1000", .Decimal = "-1"};
    const TSetpoint moved{.Min = "5", .Max = "10", .Offset = "5"};
    const TSetpoint isSigned{.Min = "-100", .Max = "100", .Decimal = "x", .Offset = ""};
    const TSetpoint tiny{.Min = "0.000000000", .Max = "0.000065535", .Decimal = "9"};
    const TSetpoint huge{.Min = "0", .Max = "6.5535E13", .Decimal = "-9"};
    const TSetpoint beyond{.Min = "2147483647", .Max = "4.2949673E9", .Offset = "2147483647"};
    const TSetpoint lowFirst{.Code = "102"};
    const TSetpoint highFirst{.Code = "103"};
    struct {
        TSetpoint Setpoint;
        std::string Entry, Outcome;
    } const cases[] = {
        {tenths, "10.0", "100"},
        {tenths, "10.1", wrong},
        {tenths, "5,5", "55"},
        {tenths, "5.5", "55"},
        {tenths, " +.5", "5"},
        {tenths, "10.04", "100"},
        {tenths, "-0.04", "0"},
        {tenths, "-0.1", wrong},
        {tenths, "1e0", "10"},
        {tenths, "1e5", wrong},
        {tenths, "1e10", wrong}, // not 110
        {tenths, std::string(300, '1'), wrong},
        {tenths, "99999999,9", wrong},
        {tenths, "abc", Error(1)},
        {tenths, "", Error(1)},
        {tenths, "--3", Error(2)},
        {tenths, "-", Error(2)},
        {tenths, ".", Error(1)},
        {tenths, "5.5x", Error(2)}, // the second try has "," for its point
        {tenths, "55x", Error(3)},
        {tenths, "1,2,3", Error(2)},
        {tenths, "5 ", Error(2)},
        {tenths, "5e", Error(3)},
        {tenths, "1e9999", Error(7)},
        {tenths, "0x1", Error(2)},
        {tenths, "nan", Error(1)},
        {tenths, "\u00E9", Error(1)},
        {hundredths, "1.005", "101"},
        {hundredths, "1.17", wrong},
        {exact, "0.15", "15"}, // a limit passes, whatever its binary fraction
        {tens, "125", "12"},
        {tens, "1009.9", "100"},
        {tens, "1010", wrong},
        {tens, "-9", "0"},
        {moved, "5", "0"},
        {moved, "10", "5"},
        {moved, "4.9", wrong},
        {isSigned, "-2", "65534"},
        {isSigned, "-100.9", "65436"},
        {isSigned, "-101", wrong},
        {tiny, "0,00005", "50000"},
        {tiny, "12345678", wrong}, // more digits than 32 bits hold
        {huge, "3999999999", "3"},
        {huge, "1e300", wrong},
        {beyond, "2147483650", "3"},
        {beyond, "1e10", wrong},
        {lowFirst, "AB", "16961"},
        {highFirst, "AB", "16706"},
        {lowFirst, "A", "65"},
        {highFirst, "A", "16640"},
        {lowFirst, "", "0"},
        {lowFirst, "\u00E9\x7F", "32745"}, // only the first one is looked at
        {lowFirst,
         "\x7F"
         "A",
         "0"},
        {highFirst,
         "\u0080"
         "A",
         "0"},
        {highFirst,
         "\u20AC"
         "A",
         "0"},
        {{.Min = "1", .Code = "102"}, "", wrong},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Setpoint.Text() + " <- " + c.Entry);
        Open(c.Setpoint);
        if (c.Outcome.starts_with(wrong))
            Dialogs.ExpectMessage(c.Outcome);
        EXPECT_EQ(Enter(c.Entry), c.Outcome);
    }
    // A limit that the profile spoiled is nobody's entry.
    Open({.Min = "none"});
    EXPECT_THROW(Enter("1"), EConvertError);
}

TEST_F(InputDialog, ShowsTheSetpointAndLogsEachStep) {
    std::vector<std::string> caret;
    const auto all =
        Dialog.EValue.SelectAllRequested.Connect([&] { caret.push_back("all " + Dialog.EValue.Text()); });
    const auto end =
        Dialog.EValue.CaretAtEndRequested.Connect([&] { caret.push_back("end " + Dialog.EValue.Text()); });
    const auto focus = Dialog.EValue.FocusRequested.Connect([&] { caret.emplace_back("focus"); });
    EXPECT_EQ(Dialog.Caption(), "Change");
    Open({.Min = " -1.5", .Max = "10.0", .Decimal = "1", .Offset = "-3"}, "2.5");
    EXPECT_EQ(Dialog.Caption(), "Supply air");
    EXPECT_EQ(Dialog.EMin.Text() + " " + Dialog.EMax.Text() + " " + Dialog.EAdress.Text(), "-1.5 10.0 40101");
    EXPECT_EQ(Dialog.ClientWidth(), 220);
    EXPECT_EQ(Enter("2,55"), "29");
    Dialogs.ExpectMessage(wrong);
    Open({.Max = "100", .Decimal = "-2", .Offset = "3"}, "5", false);
    Enter("12345,6");
    EXPECT_THAT(caret, ElementsAre("focus", "all 2.5", "focus", "end 5", "focus", "all 12345,6"));
    EXPECT_THAT(
        Log.Lines(),
        ElementsAre("currentlist values", "MAdr: 40101 MinVal: -1.5 MaxVal: 10.0 ModbusID 30",
                    "End input value", "start Input write value",
                    "decimal: 1 Input value: 2,55 FloatValue: 2.55 sValue: 26 offset -3", "End input value",
                    "Start TestBlock", "ComparedValue 29 Decimal: 1 Min: -12 Max: 103 offset -3 Result True",
                    "End TestBlock", "currentlist values", "MAdr: 40101 MinVal: 0 MaxVal: 100 ModbusID 30",
                    "End input value", "start Input write value",
                    "decimal: 100 Input value: 12345,6 FloatValue: 12345.6 sValue: 123 offset 3",
                    "End input value", "Start TestBlock",
                    "ComparedValue 120 Decimal: -2 Min: -3 Max: -2 offset 3 Result False", "End TestBlock"));
    for (const int stale : {-1, 2}) {
        Panel.SelectedDevice = stale;
        Open({});
        EXPECT_EQ(Dialog.EId.Text(), "-1");
    }
}

TEST_F(InputDialog, SendsOnlyOverALinkAndOnce) {
    struct {
        bool Initialized, Enabled;
    } const dead[] = {{false, true}, {true, false}};
    for (const auto& c : dead) {
        Device.initialized = c.Initialized;
        Files.Put("/t/s.inn", c.Enabled ? "[CommInitNabto]\nEnabled=1\n" : "[CommInitNabto]\nEnabled=0\n");
        Open({});
        EXPECT_EQ(Enter("7"), "nothing");
    }
    Device.initialized = true;
    Files.Put("/t/s.inn", "[CommInitNabto]\nEnabled=1\n");
    Dialog.ButCancel.Click();
    Open({});
    Press(Dialog, EKey::Escape);
    EXPECT_FALSE(Dialog.Visible());
    EXPECT_THAT(Library.Calls, IsEmpty());
    EXPECT_EQ(Host.Repaints, 2);

    // A second Enter waits in the queue while the first one is served; the device's answer counts for
    // nothing.
    Open({});
    Dialog.EValue.Enter("7");
    Time.After(0, [this] { Dialog.ButSend.Click(); });
    Library.Reply = [](const std::string&) {
        return R"({"error":{"body":"refused"}})";
    };
    Dialog.ButSend.Click();
    EXPECT_THAT(Library.Calls,
                ElementsAre("nabtoRpcInvoke none nabto://d/setpointWriteValue.json?json="
                            R"({"request":{"list":[{"obj":"2","address":"512","value":"7"}]}})"));
    EXPECT_FALSE(Dialog.Visible());
    EXPECT_EQ(Host.Repaints, 3);
    EXPECT_THAT(Dialogs.Shown, testing::Each(testing::Field(&TScriptedDialogs::TShown::Text, "InputDialog")));

    // Closed and opened for another row below a send: that row can be sent, too.
    Open({});
    Library.Calls.clear();
    Time.After(0, [this] {
        Press(Dialog, EKey::Escape);
        Open({.WriteType = "11"});
        Dialog.EValue.Enter("8");
        Dialog.ButSend.Click();
    });
    Enter("7");
    EXPECT_EQ(Library.Calls.size(), 2U);
    EXPECT_THAT(Library.Calls[0], testing::HasSubstr(R"("obj":"0")"));
}

TEST_F(InputDialog, ShowsAndKeepsTwoCharacters) {
    struct {
        std::string Code, Value, Shown;
    } const cases[] = {
        {"102", "16961", "AB"}, {"103", "16706", "AB"},           {"102", "65", "A"},
        {"102", "none", ""},    {"103", "59625", "\u00E8\u00E9"}, {"102", "-1", "\u00FF\u00FF"},
    };
    Open({}, "12345");
    EXPECT_EQ(Dialog.EValue.MaxLength(), 0);
    for (const auto& c : cases) {
        Open({.Code = c.Code}, c.Value);
        EXPECT_EQ(Dialog.EValue.Text(), c.Shown) << c.Code << " " << c.Value;
        EXPECT_EQ(Dialog.EValue.MaxLength(), 2);
    }
    Open({}, "12345");
    EXPECT_EQ(Dialog.EValue.Text(), "12345");
    EXPECT_EQ(Dialog.EValue.MaxLength(), 2); // it stays in force
}

TEST_F(InputDialog, ShowsAndFlipsBits) {
    const TSetpoint bits{.Code = "100",
                         .Bits = "Frost,,\u00C4bcdefghijk,a;b"}; // the row ends its field at ";"
    const auto& cells = Dialog.binaryvaluegrid.Cells;
    Open(bits, "5");
    EXPECT_TRUE(Dialog.binaryvaluegrid.Visible());
    EXPECT_EQ(Dialog.ClientWidth(), 462);
    EXPECT_THAT(cells.Row(0), ElementsAre("Frost", "", "\u00C4bcdefghi", "a", "Nu", "Nu", "Nu", "Nu", "Nu",
                                          "Nu", "Nu", "Nu", "Nu", "Nu", "Nu", "Nu"));
    EXPECT_EQ(Digits(), "0000000000000101");

    // The box of 18 pixels in the middle of a cell of 25 by 40, and 2 pixels around it.
    struct {
        int Column, Row, X, Y;
        std::string Value;
    } const clicks[] = {
        {0, 1, 1, 59, "32773"}, {0, 1, 0, 59, "32773"},
        {0, 1, 1, 58, "32773"}, {0, 1, 22, 80, "5"},
        {0, 1, 23, 80, "5"},    {0, 1, 22, 81, "5"},
        {15, 1, 386, 70, "4"},  {0, 0, 12, 70, "4"},
        {-1, -1, 12, 70, "4"},  {16, 1, 16 * 25 + 12, 70, "4"},
    };
    for (const auto& c : clicks) {
        Dialog.EValue.Enter("typed"); // gives way, even if no box was hit
        Click(c.Column, c.Row, c.X, c.Y);
        EXPECT_EQ(Dialog.EValue.Text(), c.Value) << c.X << " " << c.Y;
    }

    // What a flip sets off cannot flip.
    const auto again = Dialog.binaryvaluegrid.Changed.Connect([this] { Click(1, 1, 37, 70); });
    Click(0, 1, 12, 70);
    EXPECT_EQ(Digits(), "1000000000000100");
    Click(0, 1, 12, 70);
    EXPECT_EQ(Enter(Dialog.EValue.Text()), "4");
}

TEST_F(InputDialog, BitsWithinTheirWord) {
    Open({.Code = "100", .Bits = "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17"}, "-2");
    EXPECT_EQ(Dialog.binaryvaluegrid.Cells.Row(0).size(), 16U);
    EXPECT_EQ(Digits(), "1111111111111110");
    EXPECT_THROW(Open({.Code = "100", .Bits = "a"}, "65536"), ERangeError);
    Click(0, 1, 12, 70);
    EXPECT_EQ(Dialog.EValue.Text(), "32768"); // nothing is left of the row before
    Open({.Code = "100", .Bits = "  "}, "5");
    EXPECT_FALSE(Dialog.binaryvaluegrid.Visible());
    EXPECT_EQ(Dialog.ClientWidth(), 220);
}

} // namespace tidewell::test

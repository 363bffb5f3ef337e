#include "core/Errors.h"
#include "scenario/SetpointProgram.h"

#include <gmock/gmock.h>

#include <span>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

const std::string wrong = "This value is not valid.";

std::string Error(int position) {
    return wrong + " ErrorNumber: " + std::to_string(position);
}

class InputDialog : public TSetpointProgram {
  protected:
    InputDialog() {
        Start();
        Program->LiveLog.TimerLogAutostart->SetEnabled(false);
        Main().MemoEventLog.Clear();
    }
    void Open(const TSetpoint& setpoint, const std::string& value = "", bool selectAll = true) {
        Dialog().CurrentSetpointSpecific = setpoint.Text();
        Dialog().CurrentDatavalue = value;
        Dialog().ValueSelectAll = selectAll;
        Dialog().Hide();
        Dialogs.Show(Dialog());
    }
    // Types and presses Enter; the value on the wire, or the message.
    std::string Enter(const std::string& text) {
        Dialog().EValue.Enter(text);
        Libraries.Calls.clear();
        PressReturn(Dialog());
        const auto writes = Writes();
        EXPECT_EQ(Dialog().Visible(), writes.empty());
        if (writes.empty())
            return Dialogs.Shown.empty() ? "nothing" : Dialogs.Shown.back().Text;
        EXPECT_EQ(writes.size(), 1U);
        return writes[0].substr(4);
    }
    std::string Digits() {
        std::string digits;
        for (std::size_t column = 0; column < 16; ++column)
            digits += Dialog().binaryvaluegrid.Cells.Cell(column, 1);
        return digits;
    }
    void Click(int column, int row, int x, int y) {
        Dialog().binaryvaluegrid.OnClick({column, row, x, y, {column * 25, 50, column * 25 + 25, 90}});
    }
};

TEST_F(InputDialog, ConvertsChecksAndSends) {
    const TSetpoint tenths{.Min = "0.0", .Max = "10.0", .Decimal = " 1 "};
    const TSetpoint hundredths{.Min = "0.15", .Max = "1.16", .Decimal = "2"};
    const TSetpoint moved{.Min = "5", .Max = "10", .Offset = "5"};
    const TSetpoint isSigned{.Min = "-100", .Max = "100", .Decimal = "x", .Offset = ""};
    const TSetpoint beyond{.Min = "2147483647", .Max = "4.2949673E9", .Offset = "2147483647"};
    const TSetpoint lowFirst{.Code = "102"};
    const TSetpoint highFirst{.Code = "103"};
    struct {
        TSetpoint Setpoint;
        std::string Entry, Outcome;
    } const cases[] = {
        {tenths, "10.0", "100"},
        {tenths, "10,1", wrong},
        {tenths, "0", "0"},
        {tenths, "-0.1", wrong},
        {tenths, "abc", Error(1)},
        {tenths, "5.5x", Error(2)},
        {{.Max = "6553.5", .Decimal = "1"}, "1e10", wrong}, // not 110
        {hundredths, "0.15", "15"},
        {hundredths, "1.17", wrong},
        {moved, "5", "0"},
        {moved, "4.9", wrong},
        {isSigned, "-100.9", "65436"},
        {isSigned, "-101", wrong},
        {beyond, "2147483650", "3"},
        {{.Max = "2.1474837E9", .Offset = "5"},
         "2147483690",
         wrong}, // above 2^31 - 1, but not its shown form
        {lowFirst, "AB", "16961"},
        {highFirst, "AB", "16706"},
        {lowFirst, "", "0"},
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

TEST_F(InputDialog, GivesTheEntryTheKeyboardAndLogsEachStep) {
    std::vector<std::string> caret;
    TEdit& entry = Dialog().EValue;
    const auto all = entry.SelectAllRequested.Connect([&] { caret.push_back("all " + entry.Text()); });
    const auto end = entry.CaretAtEndRequested.Connect([&] { caret.push_back("end " + entry.Text()); });
    const auto focus = entry.FocusRequested.Connect([&] { caret.emplace_back("focus"); });
    EXPECT_EQ(Dialog().Caption(), "Change setpoint");
    Program->ModbusPanel.SelectedDevice = 2; // stale
    Open({}, "2.5");
    EXPECT_EQ(Dialog().Caption(), "Supply air");
    Dialogs.ExpectMessage(wrong);
    Open({.Max = "100", .Decimal = "-2", .Offset = "3"}, "5", false);
    Enter("12345,6");
    EXPECT_THAT(caret, ElementsAre("focus", "all 2.5", "focus", "end 5", "focus", "all 12345,6"));
    EXPECT_THAT(std::span(EventLog()).subspan(3),
                ElementsAre("currentlist values", "MAdr: 40101 MinVal: 0 MaxVal: 100 ModbusID -1",
                            "End input value", "start Input write value",
                            "decimal: 100 Input value: 12345,6 FloatValue: 12345.6 sValue: 123 offset 3",
                            "End input value", "Start TestBlock",
                            "ComparedValue 120 Decimal: -2 Min: -3 Max: -2 offset 3 Result False",
                            "End TestBlock"));
}

TEST_F(InputDialog, SendsOnlyOverALinkAndOnce) {
    Driver().initialized = false;
    Open({});
    EXPECT_EQ(Enter("7"), "nothing");
    Driver().initialized = true;
    Edit(SystemFile, "Enabled=TRUE\n; A name", "Enabled=FALSE\n; A name"); // of section CommInitNabto
    EXPECT_EQ(Enter("7"), "nothing");
    Edit(SystemFile, "Enabled=FALSE\n; A name", "Enabled=TRUE\n; A name");
    bool handled = false;
    Dialog().OnKeyDown(EKey::Escape, handled);
    EXPECT_FALSE(Dialog().Visible());
    Open({});
    Dialog().ButCancel.Click();
    EXPECT_FALSE(Dialog().Visible());

    // A second Enter waits in the queue while the first one is served.
    Open({});
    Time.After(0, [this] { Dialog().ButSend.Click(); });
    EXPECT_EQ(Enter("7"), "7");
    EXPECT_THAT(Libraries.Calls[0], testing::HasSubstr(R"("obj":"2")"));
    // Closed and opened for another row below a send: that row can be sent, too.
    Open({});
    Libraries.Calls.clear();
    Time.After(0, [this] {
        Open({.WriteType = "11"});
        Dialog().EValue.Enter("8");
        Dialog().ButSend.Click();
    });
    Dialog().EValue.Enter("7");
    Dialog().ButSend.Click();
    EXPECT_THAT(Writes(), ElementsAre("512=8", "512=7"));
    EXPECT_THAT(Libraries.Calls[0], testing::HasSubstr(R"("obj":"0")"));
    EXPECT_THAT(Dialogs.Shown, IsEmpty()); // the controller's refusal counts for nothing
}

TEST_F(InputDialog, ShowsTwoCharactersOrBits) {
    struct {
        std::string Code, Value, Shown;
    } const cases[] = {
        {"102", "16961", "AB"}, {"103", "16706", "AB"}, {"102", "none", ""}, {"1", "12345", "12345"}};
    EXPECT_EQ(Dialog().EValue.MaxLength(), 0);
    for (const auto& c : cases) {
        Open({.Code = c.Code}, c.Value);
        EXPECT_EQ(Dialog().EValue.Text(), c.Shown) << c.Code << " " << c.Value;
        EXPECT_EQ(Dialog().EValue.MaxLength(), 2); // and so it stays
    }

    TStringGrid& grid = Dialog().binaryvaluegrid;
    EXPECT_EQ(Dialog().ClientWidth(), 220);
    Open({.Code = "100", .Bits = "Frost,,\u00C4bcdefghijk,a;b"}, "5"); // the row ends its field at ";"
    EXPECT_TRUE(grid.Visible());
    EXPECT_EQ(Dialog().ClientWidth(), 462);
    EXPECT_EQ(grid.Cells.Cell(2, 0), "\u00C4bcdefghi");
    EXPECT_EQ(Digits(), "0000000000000101");
    // The box of 18 pixels in the middle of a cell of 25 by 40, and 2 pixels around it.
    struct {
        int Column, Row, X, Y;
        std::string Value;
    } const clicks[] = {
        {0, 1, 1, 59, "32773"}, {0, 1, 0, 59, "32773"}, {0, 1, 1, 58, "32773"}, {0, 1, 22, 80, "5"},
        {0, 1, 23, 80, "5"},    {0, 1, 22, 81, "5"},    {15, 1, 386, 70, "4"},  {0, 0, 12, 70, "4"},
        {-1, -1, 12, 70, "4"},  {16, 1, 412, 70, "4"},
    };
    for (const auto& c : clicks) {
        Dialog().EValue.Enter("typed"); // gives way, even if no box was hit
        Click(c.Column, c.Row, c.X, c.Y);
        EXPECT_EQ(Dialog().EValue.Text(), c.Value) << c.X << " " << c.Y;
    }
    {
        const auto again = grid.Changed.Connect([this] { Click(1, 1, 37, 70); }); // cannot flip
        Click(0, 1, 12, 70);
        EXPECT_EQ(Digits(), "1000000000000100");
    }
    Open({.Code = "100", .Bits = "a"}, "-2");
    EXPECT_EQ(Digits(), "1111111111111110");
    EXPECT_THROW(Open({.Code = "100", .Bits = "a"}, "65536"), ERangeError);
    Click(0, 1, 12, 70);
    EXPECT_EQ(Dialog().EValue.Text(), "32768"); // nothing is left of the row before
    Open({.Code = "100", .Bits = "  "}, "5");
    EXPECT_FALSE(grid.Visible());
}

} // namespace
} // namespace tidewell::test

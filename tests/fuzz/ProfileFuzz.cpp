#include "core/Numbers.h"
#include "fuzz/Fuzz.h"
#include "model/ModbusPanel.h"

#include <set>

namespace tidewell::test {
namespace {

constexpr const char* fedPath = "/t/profile/a.pls";
constexpr const char* dataLine = "0;02-03-2026;08:00:00;1; -2; 40000; 3; x; 5; ";

// All that shows a row of the setpoint grid.
void ShowListRows(TDatalogRig& rig) {
    TModbusPanel panel(rig.Files, rig.Wait);
    panel.SetMpanelWorkingpath("/t");
    panel.SetMpanelPLSpath(fedPath);
    panel.InitQuestionStringlistStructures();
    for (const TMDevice& device : panel.DeviceList)
        for (const TStringTable& table : device.ReadListText)
            for (std::size_t row = 0; row < table.RowCount(); ++row) {
                std::string text;
                for (std::size_t column = 0; column < table.ColCount(); ++column)
                    text += table.Cell(column, row) + ';';
                Guarded([&text] {
                    std::vector<std::string> help;
                    std::vector<std::string> shown;
                    const TListRow listRow = ParseListRow(FormatRowLimits(text, help));
                    FormatListValues(dataLine, shown, {listRow});
                    CellText(listRow, shown.at(0));
                });
            }
}

// Writes the graph settings back; what they do not cover reads as before.
void WriteBack(TDatalogRig& rig) {
    const std::vector<TGraphPoint> before = rig.Profile.GraphPoints;
    rig.Profile.WriteGraphSettings(rig.Page.ChannelSettings());
    std::set<std::string> names;
    for (const auto& row : TIniFile(rig.Files, fedPath).ReadSection("GraphPoints").Rows())
        if (!names.insert(LowerCase(row.Name)).second)
            return; // the first of a name gets the row of the last
    rig.Profile.Open(fedPath);
    Require(before.size() == rig.Profile.GraphPoints.size(), "another count of graph rows");
    for (std::size_t i = 0; i < before.size(); ++i) {
        const TGraphPoint& after = rig.Profile.GraphPoints[i];
        Require(before[i].IsChannel == after.IsChannel && before[i].Structnumber == after.Structnumber &&
                    before[i].Offset == after.Offset && before[i].Decimal == after.Decimal &&
                    before[i].Type == after.Type,
                "another graph row");
    }
}

} // namespace

void FeedProfile(std::string_view bytes) {
    TDatalogRig rig;
    rig.Files.Put(fedPath, std::string(bytes));
    rig.Profile.Open(fedPath);
    rig.Profile.ReadNabtoSection(fedPath);
    ReadPollQuestions(rig.Files, fedPath);
    rig.Page.XAxisJump = 2;
    Guarded([&] { ShowListRows(rig); });
    Guarded([&] { rig.Page.GraphInit(true); });
    for (int i = 0; i < 4; ++i) {
        rig.Page.GraphDataLabelsTimeText.Add("t");
        rig.Page.GraphDataLabelsDateText.Add("d");
        Guarded([&] { rig.Page.ExtendGraph(dataLine); });
    }
    for (const TSLDisplayChannel& channel : rig.Page.graph.Channels)
        rig.Page.NamedBits.ChannelIsBinary(channel.Name());
    Guarded([&] { WriteBack(rig); });
}

} // namespace tidewell::test

#include "logging/CsvExport.h"

#include "core/ChosenFile.h"
#include "core/Errors.h"
#include "core/Guard.h"
#include "core/Numbers.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "graph/GraphPage.h"
#include "model/Profile.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace tidewell {

namespace {

constexpr std::size_t headRows = 2;
constexpr std::size_t pieceSize = 1U << 20U; // bytes written at a time
constexpr std::string_view lineEnd = "\r\n";

void AddCell(std::string& text, std::string_view cell) {
    if (cell.find_first_of(";\"") == std::string_view::npos) {
        text += cell;
        return;
    }
    text += '"';
    for (const char c : cell) {
        if (c == '"')
            text += '"';
        text += c;
    }
    text += '"';
}

void AddLine(std::string& text, const std::vector<std::string>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0)
            text += ';';
        AddCell(text, cells[i]);
    }
    text += lineEnd;
}

void AddValue(std::string& text, double value) {
    const std::size_t begin = text.size();
    text += FixedText(value, 2);
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), '.', ',');
}

// A channel's samples one by one.
class TColumn {
  public:
    TColumn(const TSampleTable& table, std::size_t channel) : Table(table), Channel(channel) {}
    // Throws EListError for a channel that the table does not hold.
    double At(std::size_t sample) {
        if (sample >= First + Run.size()) {
            First = sample;
            Run = Table.Run(Channel, sample);
            if (Run.empty())
                throw EListError(Channel);
        }
        return Run[sample - First];
    }

  private:
    const TSampleTable& Table;
    std::size_t Channel;
    std::size_t First = 0;
    std::span<const double> Run;
};

} // namespace

void TCsvExport::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl", {{DialogSaveDatalogFile, "DialogSaveDatalogFile"}});
}

void TCsvExport::Exportdatatocsv1Click() {
    Needs.Log.StopLog();
    try {
        Export();
    } catch (const TError& error) {
        Needs.MemoEventLog.Add(error.what());
        Needs.Dialogs.ShowMessage("No data in graph buffer");
    }
}

void TCsvExport::Export() {
    const TGraphPage& page = Needs.GraphPage;
    const std::size_t rows = page.GraphSampleCount();
    if (rows == 0 || page.GraphDataLabelsTimeText.Count() < rows)
        throw EListError(page.GraphDataLabelsTimeText.Count());
    TFileDialog dialog;
    dialog.Title = DialogSaveDatalogFile;
    dialog.InitialDirectory = Needs.directorypath / "log" / "exported";
    dialog.Filters = {{"csv", "*.csv"}};
    const auto path = ChooseCsvFile(Needs.Files, Needs.Dialogs, dialog);
    if (!path)
        return;
    {
        const TWaitCursor wait(Needs.Dialogs);
        const auto file = Needs.Files.Replace(*path);
        WriteTable(*file);
        file->Commit();
    }
    Needs.MemoEventLog.Add("Saved Visualgraphdata " + path->string());
}

void TCsvExport::WriteTable(IFileWriter& file) const {
    const TGraphPage& page = Needs.GraphPage;
    const std::size_t rows = page.GraphSampleCount();
    std::vector<std::string> start{"LogStartDate", page.CurrentLogStartDate, "Profile",
                                   Needs.Profile.currentprofilefile.string()};
    std::vector<std::string> titles{"Time"};
    std::vector<TColumn> columns;
    for (std::size_t channel = 0; channel < page.graph.Channels.Count(); ++channel) {
        if (!page.graph.Channels[channel].Visible())
            continue;
        titles.push_back(page.graph.Channels[channel].Name());
        columns.emplace_back(page.DataLogDataValues, channel);
    }
    start.resize(titles.size());
    std::string text;
    AddLine(text, start);
    if (rows >= headRows)
        AddLine(text, titles);
    for (std::size_t row = 0; row + headRows < rows; ++row) {
        AddCell(text, page.GraphDataLabelsTimeText.At(row));
        for (TColumn& column : columns) {
            text += ';';
            AddValue(text, column.At(row));
        }
        text += lineEnd;
        if (text.size() >= pieceSize) {
            file.Write(text);
            text.clear();
        }
    }
    file.Write(text);
}

} // namespace tidewell

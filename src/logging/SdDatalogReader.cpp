#include "logging/SdDatalogReader.h"

#include "core/AtExit.h"
#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/OpenDialogFilters.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "graph/GraphPage.h"
#include "logging/DatalogLines.h"
#include "model/GraphRowParser.h"
#include "model/Profile.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <string_view>

namespace tidewell {

namespace {

using TMinute = std::chrono::sys_time<std::chrono::minutes>;

constexpr std::size_t dataLines = 360;
constexpr std::size_t stampLine = 360; // from 0
constexpr std::size_t magicLine = 361;
constexpr std::size_t values = 16;
constexpr std::array<std::string_view, 2> magics{"QX410_SD_datalog_by_Korvanium_A/S",
                                                 "SD_datalog_by_Korvanium_A/S"};
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t manyRows = 10000;
constexpr std::size_t truncation = 10; // every tenth row is kept
constexpr std::size_t typeField = 6;   // of a graph row
constexpr int labelAxis = 2;
constexpr double labelHeight = 0.05;

// The lines that matter, empty ones for those that are missing.
std::vector<std::string> FirstLines(const IFiles& files, const std::filesystem::path& path) {
    std::vector<std::string> lines;
    TDatalogLineReader reader(files.Open(path));
    for (std::string_view line; lines.size() <= magicLine && reader.Next(line);)
        lines.emplace_back(line);
    if (!lines.empty() && lines[0].starts_with(byteOrderMark))
        lines[0].erase(0, byteOrderMark.size());
    lines.resize(magicLine + 1);
    return lines;
}

TMinute StampOf(const std::string& line) {
    std::array<std::int32_t, 5> part{};
    for (std::size_t i = 0; i < part.size(); ++i)
        part.at(i) = ToInteger(GetRowField(line, i));
    const auto [year, month, day, hour, minute] = part;
    const std::chrono::year_month_day date(std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)));
    const bool inRange = year >= 1 && year <= 9999 && month >= 1 && day >= 1 && month <= 12 && day <= 31;
    if (!inRange || !date.ok() || hour < 0 || hour > 23 || minute < 0 || minute > 59)
        throw EConvertError("'" + line + "' is not a valid date and time");
    return std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute);
}

std::string StampText(TMinute time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const auto minutes = (time - day).count();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%u-%u-%d;%02d:%02d:00;", static_cast<unsigned>(date.day()),
                  static_cast<unsigned>(date.month()), static_cast<int>(date.year()),
                  static_cast<int>(minutes / 60), static_cast<int>(minutes % 60));
    return text.data();
}

// Two bytes in decimal: the first three characters, and the rest.
std::string ValueText(std::string_view field) {
    const std::int64_t high = ToInteger(field.substr(0, 3));
    const std::int64_t low = ToInteger(field.size() > 3 ? field.substr(3) : std::string_view());
    return std::to_string(high * 256 + low);
}

std::string ValuesText(std::string_view line) {
    std::string text;
    for (std::size_t i = 0; i < values; ++i) {
        const auto end = line.find(';');
        text += ValueText(line.substr(0, end));
        text += ';';
        if (end != std::string_view::npos)
            line.remove_prefix(end + 1); // a last field without one stands for all that are missing
    }
    return text;
}

} // namespace

void TSdDatalogReader::Convert(const std::filesystem::path& path, std::vector<std::string>& rows) {
    const std::vector<std::string> lines = FirstLines(Needs.Files, path);
    const std::string& magic = lines[magicLine];
    if (magic != magics[0] && magic != magics[1]) {
        TellRefused(path.string());
        Needs.Dialogs.ShowMessage("SD Card file is not a valid datalog file");
        return;
    }
    std::size_t line = stampLine;
    try {
        TMinute time = StampOf(lines[stampLine]) - std::chrono::minutes(dataLines - 1);
        for (line = 0; line < dataLines; ++line) {
            rows.push_back(std::to_string(line) + ';' + StampText(time) + ValuesText(lines[line]));
            time += std::chrono::minutes(1);
        }
    } catch (const EConvertError& error) {
        throw EConvertError(path.string() + ", line " + std::to_string(line + 1) + ": " + error.what());
    }
    rows.emplace_back(HeaderMark);
}

void TSdDatalogReader::TellRefused(const std::string& what) {
    Needs.MemoEventLog.Add(FillText(FileRefused, {what}));
}

bool TSdDatalogReader::ChooseProfile() {
    TFileDialog dialog;
    dialog.Title = DialogOpenProfileCaption;
    dialog.InitialDirectory = Needs.directorypath / "profile";
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogSdProfileFilter;
    dialog.FileMustExist = true;
    if (const auto path = Needs.Dialogs.OpenFile(dialog))
        OnOpenProfile(*path);
    Needs.GraphPage.GraphInit(true);
    Needs.GraphPage.ClearGraphPage();
    return Needs.Profile.ProfileLoaded && Needs.Program.IsOpen();
}

std::vector<std::filesystem::path> TSdDatalogReader::ChooseFiles() {
    TFileDialog dialog;
    dialog.Title = DialogOpenDatalogFileCaption;
    dialog.InitialDirectory = Needs.directorypath;
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogSdDatalogFilter;
    dialog.FileMustExist = true;
    return Needs.Dialogs.OpenFiles(dialog);
}

void TSdDatalogReader::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl",
              {{MessageStopLog, "MessageStopLog"},
               {DialogOpenProfileCaption, "DialogOpenProfileCaption"},
               {DialogOpenDatalogFileCaption, "DialogOpenDatalogFileCaption"}});
    ReadOwnTexts(language, "SdDatalog", {{FileRefused, "FileRefused"}});
}

void TSdDatalogReader::Open_sd_datalogClick() {
    const TExclusiveUse::THold hold(Needs.Opening);
    if (!hold)
        return;
    if (Needs.Dialogs.ShowMessageBox(EMessageKind::Information, MessageStopLog, EButtons::OkCancel) !=
            EModalResult::Ok ||
        !Needs.Program.IsOpen())
        return;
    Needs.Profile.ProfileLoaded = false;
    Needs.Log.StopLog();
    if (!ChooseProfile())
        return;
    const auto paths = ChooseFiles();
    if (!Needs.Program.IsOpen())
        return;
    if (!paths.empty()) {
        Needs.Log.StopLog();
        Needs.GraphPage.ClearGraphPage();
        Needs.GraphPage.DatalogFileOpen = true;
        std::vector<std::string> rows;
        bool headers = false;
        for (const auto& path : paths) {
            try {
                Convert(path, rows);
            } catch (const TError& error) {
                TellRefused(error.what());
                throw;
            }
            if (rows.empty())
                throw EListError(-1);
            if (rows.back().find(HeaderMark) != std::string::npos) {
                headers = true;
                rows.pop_back();
            }
        }
        TellChosenFiles(Needs, paths);
        const std::size_t interval = FitAxis(rows);
        if (!WaitForPaint(Needs, rows.size()))
            return;
        if (!headers) {
            rows.clear();
            Needs.GraphPage.ClearGraphPage();
            Needs.Dialogs.ShowMessage(NoDatalogMessage);
        }
        Draw(rows, interval);
    }
    Needs.FileProgressBar.SetVisible(false);
    Needs.Profile.ProfileLoaded = false;
}

std::size_t TSdDatalogReader::FitAxis(std::vector<std::string>& rows) {
    TGraphPage& page = Needs.GraphPage;
    const auto jump = static_cast<std::size_t>(page.XAxisJump);
    if (rows.size() < jump) {
        page.graph.XAxis.Max.SetBoth(page.XAxisJump);
        return 100;
    }
    if (rows.size() > manyRows &&
        Needs.Dialogs.ShowMessageBox(EMessageKind::Confirmation,
                                     "Datalog size is big proceed with truncated size",
                                     EButtons::YesNo) == EModalResult::Yes) {
        std::vector<std::string> kept;
        for (std::size_t i = 0; i < rows.size(); i += truncation)
            kept.push_back(std::move(rows[i]));
        rows = std::move(kept);
    }
    page.graph.XAxis.Max.SetBoth(static_cast<double>(jump + rows.size()));
    return 500;
}

void TSdDatalogReader::Draw(const std::vector<std::string>& rows, std::size_t labelInterval) {
    TGraphPage& page = Needs.GraphPage;
    TSLScope& graph = page.graph;
    const TAtExit hideBar([this] { Needs.FileProgressBar.SetVisible(false); });
    std::vector<TGraphPoint> points;
    for (const std::string& row : Needs.Profile.GraphValues)
        points.push_back(ParseGraphPoint(SetRowField(row, typeField, "0"))); // the type plays no part here
    TGraphRowParser parser(points);
    if (parser.Channels() == 0)
        throw TError(Needs.Profile.currentprofilefile.string() + ": no row of [GraphPoints] is a channel");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        Needs.FileProgressBar.SetPosition(static_cast<int>(i));
        parser.Parse(rows[i]);
        if (i == 0)
            page.CurrentLogStartDate = parser.Date();
        for (std::size_t channel = 0; channel < parser.Channels(); ++channel)
            graph.Channels[channel].Data.AddYPoint(parser.Value(channel));
        if (i % labelInterval == 0) {
            TSLScopeTextLabel& label = graph.Labels.Add();
            label.SetName(std::string(parser.Time()));
            label.SetYAxisIndex(labelAxis);
            label.SetPosition({static_cast<double>(graph.Channels[0].Data.GetSize()), labelHeight});
        }
    }
}

} // namespace tidewell

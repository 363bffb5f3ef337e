#include "logging/DatalogReader.h"

#include "core/LogControl.h"
#include "core/OpenDialogFilters.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "graph/GraphPage.h"
#include "logging/DatalogLines.h"
#include "model/Profile.h"

namespace tidewell {

namespace {

constexpr int barStart = 10;
constexpr int afterNames = 100; // ms

class TNoLines : public IDataLines {
  public:
    std::size_t Count() const override { return 0; }
    std::string_view Next() override { return {}; }
};

} // namespace

void TellChosenFiles(const TDatalogParts& parts, const std::vector<std::filesystem::path>& paths) {
    parts.FileProgressBar.SetVisible(true);
    parts.FileProgressBar.SetPosition(barStart);
    for (const auto& path : paths)
        parts.MemoEventLog.Add(path.string());
}

bool WaitForPaint(const TDatalogParts& parts, std::size_t rows) {
    parts.Wait.ProcessMessages();
    parts.Wait.Sleep(afterNames);
    parts.FileProgressBar.SetMax(static_cast<int>(rows));
    return parts.Program.IsOpen();
}

void TDatalogReader::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl", {{DialogOpenDatalogFileCaption, "DialogOpenDatalogFileCaption"}});
}

void TDatalogReader::OpenDatalogfile1Click() {
    const TExclusiveUse::THold hold(Parts.Opening);
    if (!hold || !Parts.Profile.ProfileLoaded)
        return;
    TFileDialog dialog;
    dialog.Title = DialogOpenDatalogFileCaption;
    dialog.InitialDirectory = Parts.directorypath / "log" / "userlog";
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogCsvFilter;
    dialog.FileMustExist = true;
    const auto paths = Parts.Dialogs.OpenFiles(dialog);
    if (!Parts.Program.IsOpen())
        return;
    if (paths.empty()) {
        Parts.FileProgressBar.SetVisible(false);
        return;
    }
    Parts.Log.StopLog();
    Parts.GraphPage.ClearGraphPage();
    Parts.GraphPage.DatalogFileOpen = true;
    TDatalogLines lines(Parts.Files, paths);
    TellChosenFiles(Parts, paths);
    if (!WaitForPaint(Parts, lines.Count()))
        return;
    if (lines.CurrentFileImportHeaders().empty()) {
        Parts.GraphPage.ClearGraphPage();
        Parts.Dialogs.ShowMessage(NoDatalogMessage);
        TNoLines none;
        Parts.GraphPage.DrawGraphDatafromList(none);
        return;
    }
    Parts.GraphPage.DrawGraphDatafromList(lines);
    Parts.FileProgressBar.SetVisible(false);
}

} // namespace tidewell

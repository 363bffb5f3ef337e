#include "logging/DatalogReader.h"

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

void TellChosenFiles(const TDatalogNeeds& needs, const std::vector<std::filesystem::path>& paths) {
    needs.FileProgressBar.SetVisible(true);
    needs.FileProgressBar.SetPosition(barStart);
    for (const auto& path : paths)
        needs.MemoEventLog.Add(path.string());
}

bool WaitForPaint(const TDatalogNeeds& needs, std::size_t rows) {
    needs.Wait.ProcessMessages();
    needs.Wait.Sleep(afterNames);
    needs.FileProgressBar.SetMax(static_cast<int>(rows));
    return needs.Program.IsOpen();
}

void TDatalogReader::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl", {{DialogOpenDatalogFileCaption, "DialogOpenDatalogFileCaption"}});
}

void TDatalogReader::OpenDatalogfile1Click() {
    const TExclusiveUse::THold hold(Needs.Opening);
    if (!hold || !Needs.Profile.ProfileLoaded)
        return;
    TFileDialog dialog;
    dialog.Title = DialogOpenDatalogFileCaption;
    dialog.InitialDirectory = Needs.directorypath / "log" / "userlog";
    dialog.Filters = OpenDialogFilters();
    dialog.SelectedFilter = OpenDialogCsvFilter;
    dialog.FileMustExist = true;
    const auto paths = Needs.Dialogs.OpenFiles(dialog);
    if (!Needs.Program.IsOpen())
        return;
    if (paths.empty()) {
        Needs.FileProgressBar.SetVisible(false);
        return;
    }
    Show(paths);
}

void TDatalogReader::Show(const std::vector<std::filesystem::path>& paths) {
    Needs.Log.StopLog();
    Needs.GraphPage.ClearGraphPage();
    Needs.GraphPage.DatalogFileOpen = true;
    TDatalogLines lines(Needs.Files, paths);
    TellChosenFiles(Needs, paths);
    if (!WaitForPaint(Needs, lines.Count()))
        return;
    if (lines.CurrentFileImportHeaders().empty()) {
        Needs.GraphPage.ClearGraphPage();
        Needs.Dialogs.ShowMessage(NoDatalogMessage);
        TNoLines none;
        Needs.GraphPage.DrawGraphDatafromList(none);
        return;
    }
    Needs.GraphPage.DrawGraphDatafromList(lines);
    Needs.FileProgressBar.SetVisible(false);
}

} // namespace tidewell

#include "mainform/FlashView.h"

#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/TextFile.h"

#include <string>
#include <vector>

namespace tidewell {

namespace {

// All rows but the last, which is the header row.
void DrawRows(TGraphPage& page, const std::vector<std::string>& rows) {
    for (std::size_t row = 0; row + 1 < rows.size(); ++row) {
        page.GraphDataLabelsTimeText.Add(GetRowField(rows[row], 2));
        page.GraphDataLabelsDateText.Add(GetRowField(rows[row], 1));
        page.AddGraphSample(rows[row], row);
    }
    page.UpdateGraphScrollBar();
    page.UpdateTestData(page.GraphScroll.Position());
}

} // namespace

void TFlashView::Show(const std::filesystem::path& profile, const std::filesystem::path& file) {
    const std::vector<std::string> rows = ReadLines(Ports.Files, file);
    Parts.ProfileOpening.OpenProfile(profile);
    RunGuarded(Ports.Dialogs, [this] { Parts.GraphPage.GraphInit(true); });
    Parts.GraphPage.ClearGraphPage();
    Parts.Device.Close();
    DrawRows(Parts.GraphPage, rows);
    Parts.Controls.TheTab.SetActivePage(Parts.Controls.TabGraph);
    Parts.Controls.TabSetpoint.SetVisible(false);
    Parts.Controls.WindowSetpoint1.SetEnabled(false);
    Parts.Profile.ProfileLoaded = false;
}

} // namespace tidewell

#include "mainform/FlashView.h"

#include "core/Guard.h"
#include "logging/DatalogLines.h"

#include <cstddef>
#include <string_view>

namespace tidewell {

namespace {

// All lines of one file, the header row among them.
class TFileLines : public IDataLines {
  public:
    // Throws EInOutError.
    TFileLines(const IFiles& files, const std::filesystem::path& path) : Reader(files.Open(path)) {
        TDatalogLineReader counted(files.Open(path));
        for (std::string_view line; counted.Next(line);)
            ++Lines;
    }
    std::size_t Count() const override { return Lines; }
    std::string_view Next() override {
        std::string_view line;
        return Reader.Next(line) ? line : std::string_view();
    }

  private:
    TDatalogLineReader Reader;
    std::size_t Lines = 0;
};

} // namespace

void TFlashView::Show(const std::filesystem::path& profile, const std::filesystem::path& file) {
    TFileLines lines(Ports.Files, file);
    const TBefore before = Before();
    Parts.ProfileOpening.OpenProfile(profile);
    try {
        Draw(lines);
    } catch (...) {
        Restore(before);
        throw;
    }
    Parts.Main.TheTab.SetActivePage(Parts.Main.TabGraph);
    Parts.Main.TabSetpoint.SetVisible(false);
    Parts.Main.WindowSetpoint1.SetEnabled(false);
    Parts.Profile.ProfileLoaded = false;
}

void TFlashView::Draw(IDataLines& lines) {
    RunGuarded(Ports.Dialogs, [this] { Parts.GraphPage.GraphInit(true); });
    Parts.GraphPage.ClearGraphPage();
    Parts.Device.Close();
    Parts.GraphPage.DrawGraphDatafromList(lines);
}

TFlashView::TBefore TFlashView::Before() const {
    return {Parts.Profile, Parts.GraphPage.ChannelSettings(), Parts.Main.Caption(),
            Parts.Panel.GlobalPlsFilePath};
}

// Devices, tree, poll questions and settings have stayed those of the profile before.
void TFlashView::Restore(const TBefore& before) {
    static_cast<TProfileGraph&>(Parts.Profile) = before.Profile;
    Parts.Panel.SetMpanelPLSpath(before.PlsFilePath);
    Parts.Main.SetCaption(before.Caption);
    if (before.Profile.ProfileLoaded)
        Parts.Main.MemoEventLog.Add(before.Profile.currentprofilefile.string() + " opened");
    Parts.ProfileOpening.TellFault();
    RunGuarded(Ports.Dialogs, [this] { Parts.GraphPage.GraphInit(true); });
    Parts.GraphPage.ApplySettings(before.Channels);
}

} // namespace tidewell

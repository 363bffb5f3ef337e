#include "mainform/FlashDatalogOpening.h"

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

void TFlashDatalogOpening::Show(const std::filesystem::path& profile, const std::filesystem::path& file) {
    TFileLines lines(Ports.Files, file);
    const TBefore before = Before();
    Needs.ProfileOpening.OpenProfile(profile);
    try {
        Draw(lines);
    } catch (...) {
        Restore(before);
        throw;
    }
    Needs.Main.TheTab.SetActivePage(Needs.Main.TabGraph);
    Needs.Main.TabSetpoint.SetVisible(false);
    Needs.Main.WindowSetpoint1.SetEnabled(false);
    Needs.Profile.ProfileLoaded = false;
}

void TFlashDatalogOpening::Draw(IDataLines& lines) {
    RunGuarded(Ports.Dialogs, [this] { Needs.GraphPage.GraphInit(true); });
    Needs.GraphPage.ClearGraphPage();
    Needs.Device.Close();
    Needs.GraphPage.DrawGraphDatafromList(lines);
}

TFlashDatalogOpening::TBefore TFlashDatalogOpening::Before() const {
    return {Needs.Profile, Needs.GraphPage.ChannelSettings(), Needs.Main.Caption(),
            Needs.Panel.GlobalPlsFilePath};
}

// Devices, tree, poll questions and settings have stayed those of the profile before.
void TFlashDatalogOpening::Restore(const TBefore& before) {
    static_cast<TProfileGraph&>(Needs.Profile) = before.Profile;
    Needs.Panel.SetMpanelPLSpath(before.PlsFilePath);
    Needs.Main.SetCaption(before.Caption);
    if (before.Profile.ProfileLoaded)
        Needs.Main.MemoEventLog.Add(before.Profile.currentprofilefile.string() + " opened");
    Needs.ProfileOpening.TellFault();
    RunGuarded(Ports.Dialogs, [this] { Needs.GraphPage.GraphInit(true); });
    Needs.GraphPage.ApplySettings(before.Channels);
}

} // namespace tidewell

#include "fuzz/Fuzz.h"
#include "logging/SdDatalogReader.h"

namespace tidewell::test {
namespace {

constexpr const char* sdChannelsText = "[GraphPoints]\r\n"
                                       "A=First;1;clRed;3;0;1;150;;;;;;1;\r\n"
                                       "B=Last;3;clBlue;18;-7;-2;x;;;;;;1;\r\n"
                                       "C=Beyond;0;;19;-7;300;;;;;;;1;\r\n";

// A file of 360 rows needs more bytes than are good for finding faults, so the lines of a text that starts
// with "@" stand for stamp, magic and rows, which are repeated; any other text is a file as it stands.
std::string FileOf(std::string_view text) {
    if (!text.starts_with('@'))
        return std::string(text);
    text.remove_prefix(1);
    const std::string stamp(TakeUpTo(text, '\n'));
    const std::string magic(TakeUpTo(text, '\n'));
    std::string file;
    std::string_view rest = text;
    for (int row = 0; row < 360; ++row) {
        if (rest.empty())
            rest = text;
        file.append(TakeUpTo(rest, '\n')).append("\n");
    }
    return file + stamp + "\n" + magic;
}

} // namespace

void FeedSd(std::string_view bytes) {
    TDatalogRig rig;
    rig.Files.Put("/t/a.SDpls", sdChannelsText);
    rig.Dialogs.Opened = "/t/a.SDpls";
    std::vector<std::string> files;
    for (const std::string& part : Parts(bytes))
        files.push_back(FileOf(part));
    rig.Choose(files);
    try {
        TSdDatalogReader reader(rig.Needs);
        reader.OnOpenProfile = [&rig](const std::filesystem::path& path) { rig.Profile.Open(path); };
        reader.Open_sd_datalogClick();
        const std::size_t rows = rig.Page.graph.Channels[0].Data.GetSize();
        Require(rows > 0 && rows % 360 == 0, "rows are missing");
        Require(rig.Page.graph.Labels.Count() > 12, "labels are missing");
        Require(!rig.Profile.ProfileLoaded && rig.Page.GraphSampleCount() == 0, "not only on the surface");
    } catch (const TError&) { // told
        for (const TSLDisplayChannel& channel : rig.Page.graph.Channels)
            Require(channel.Data.GetSize() == 0, "half a page");
    }
}

} // namespace tidewell::test

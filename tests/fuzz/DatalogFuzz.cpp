#include "core/TextFile.h"
#include "fuzz/Fuzz.h"
#include "logging/CsvExport.h"
#include "logging/DatalogLines.h"

#include <algorithm>

namespace tidewell::test {
namespace {

constexpr std::size_t longestLine = 24;
constexpr const char* channelsText = "[GraphPoints]\r\n"
                                     "A=First;1;clRed;3;0;1;150;;;;;;1;\r\n"
                                     "B=Bits;2;;4;0;0;100;a,b,c;;;;;1;\r\n"
                                     "C=Number;3;clBlue;0;-7;-2;250;;;;;;1;\r\n"
                                     "D=Date;9;x;1;0;0;99;;;;;;1;\r\n"
                                     "E=Time;0;x;2;0;300;200;;;;;;1;\r\n"
                                     "F=Far;1;x;9;2147483647;-1;0;;;;;;1;\r\n";

// The lines come out the same whatever the size of the blocks, but for their cut.
void CompareLines(const TMemoryFiles& files, std::string_view bytes, std::size_t blockSize) {
    const std::vector<std::string> whole = SplitLines(bytes);
    TDatalogLineReader reader(files.Open("/t/0.log"), blockSize, longestLine);
    std::size_t count = 0;
    for (std::string_view line; reader.Next(line); ++count) {
        Require(count < whole.size() && whole[count].starts_with(line), "another line");
        Require(line.size() >= std::min(whole[count].size(), longestLine), "a line cut too early");
    }
    Require(count == whole.size(), "lines are missing");
}

void Open(TDatalogRig& rig) {
    TDatalogReader(rig.Needs).OpenDatalogfile1Click();
    const std::size_t samples = rig.Page.GraphSampleCount();
    Require(samples > 0 && samples == rig.Page.GraphDataLabelsTimeText.Count() &&
                samples == rig.Page.GraphDataLabelsDateText.Count(),
            "samples and times differ");
    rig.Page.GraphScroll.Scroll(EScrollCode::Track, rig.Page.GraphScroll.Max());
    rig.Page.graph.UserZooms(rig.Page.graph.XAxis, {1, 30});
    rig.Dialogs.Saved = "/t/export.csv";
    TCsvExport(rig.Needs).Exportdatatocsv1Click();
    const std::string table = rig.Files.Read("/t/export.csv");
    Require(IsValidUtf8(table), "a table of two encodings");
    Require(static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n')) >= samples,
            "lines of the table are missing");
}

} // namespace

void FeedDatalog(std::string_view bytes) {
    if (bytes.empty())
        return;
    const auto blockSize = static_cast<std::size_t>(static_cast<unsigned char>(bytes.front())) + 1;
    bytes.remove_prefix(1);
    TDatalogRig rig(channelsText, 10);
    rig.Choose(Parts(bytes));
    const std::string first = rig.Files.Read("/t/0.log");
    CompareLines(rig.Files, first, blockSize);
    TGraphRowParser parser(rig.Profile.GraphPoints);
    for (const std::string& line : SplitLines(first))
        CheckRow(rig.Profile.GraphPoints, parser, line);
    Guarded([&rig] { Open(rig); });
}

} // namespace tidewell::test

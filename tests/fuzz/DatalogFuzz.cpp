#include "core/Errors.h"
#include "core/TextFile.h"
#include "fuzz/Fuzz.h"
#include "logging/CsvExport.h"
#include "logging/DatalogLines.h"
#include "model/GraphRowParser.h"

#include <algorithm>
#include <cstdint>

namespace tidewell::test {
namespace {

constexpr char nextFile = '\x1C';
constexpr std::size_t longestLine = 24;
constexpr const char* profileText = "[GraphPoints]\r\n"
                                    "A=First;1;clRed;3;0;1;150;;;;;;1;\r\n"
                                    "B=Bits;2;;4;0;0;100;a,b,c;;;;;1;\r\n"
                                    "C=Number;3;clBlue;0;-7;-2;250;;;;;;1;\r\n"
                                    "D=Date;9;x;1;0;0;99;;;;;;1;\r\n"
                                    "E=Time;0;x;2;0;300;200;;;;;;1;\r\n"
                                    "F=Far;1;x;9;2147483647;-1;0;;;;;;1;\r\n";

// The lines come out the same whatever the size of the blocks, but for their cut.
void CompareLines(const TMemoryFiles& files, std::string_view bytes, std::size_t blockSize) {
    const std::vector<std::string> whole = SplitLines(bytes);
    TDatalogLineReader reader(files.Open("/t/0.csv"), blockSize, longestLine);
    std::size_t count = 0;
    for (std::string_view line; reader.Next(line); ++count) {
        Require(count < whole.size() && whole[count].starts_with(line), "another line");
        Require(line.size() >= std::min(whole[count].size(), longestLine), "a line cut too early");
    }
    Require(count == whole.size(), "lines are missing");
}

void CompareValues(const std::vector<TGraphPoint>& points, std::string_view bytes) {
    TGraphRowParser parser(points);
    for (const std::string& line : SplitLines(bytes)) {
        parser.Parse(line);
        const TSplitLine fields(line);
        Require(parser.Date() == fields.Field(1) && parser.Time() == fields.Field(2), "another date or time");
        for (std::size_t i = 0; i < points.size(); ++i)
            Require(parser.Value(i) == CalculateDatapointValue(points[i], fields).Value, "another value");
    }
}

void Browse(TGraphPage& page) {
    page.GraphZoomPlusButton.Click();
    page.GraphScroll.Scroll(EScrollCode::Track, page.GraphScroll.Max());
    page.GraphScroll.Scroll(EScrollCode::End, 0);
    page.graph.UserZooms(page.graph.XAxis, {1, 30});
    page.graph.UserMovesCursor(0, {1, 1});
    for (std::size_t i = 0; i < page.graph.Channels.Count(); ++i) {
        bool handled = false;
        page.graph.Legend.Channels.OnItemClick(i, handled);
    }
}

void Open(TFuzzRig& rig) {
    TDatalogReader(rig.Needs).OpenDatalogfile1Click();
    const std::size_t samples = rig.Page.GraphSampleCount();
    Require(samples > 0 && samples == rig.Page.GraphDataLabelsTimeText.Count() &&
                samples == rig.Page.GraphDataLabelsDateText.Count(),
            "samples and times differ");
    Browse(rig.Page);
    rig.Dialogs.Target = "/t/export.csv";
    TCsvExport(rig.Needs).Exportdatatocsv1Click();
    const std::string table = rig.Files.Read("/t/export.csv");
    Require(IsValidUtf8(table), "a table of two encodings");
    Require(static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n')) >= samples,
            "lines of the table are missing");
}

} // namespace
} // namespace tidewell::test

// The first byte is a size of blocks; then come the files, separated by 0x1C.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tidewell;
    using namespace tidewell::test;
    if (size == 0)
        return 0;
    std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    TFuzzRig rig;
    rig.Files.Put("/t/a.pls", profileText);
    rig.Profile.Open("/t/a.pls");
    rig.Page.XAxisJump = 10;
    rig.Page.GraphInit(true);
    for (int file = 0; file == 0 || (!bytes.empty() && file < 3); ++file) {
        rig.Dialogs.Datalogs.push_back("/t/" + std::to_string(file) + ".csv");
        rig.Files.Put(rig.Dialogs.Datalogs.back(), std::string(TakeUpTo(bytes, nextFile)));
    }
    const std::string first = rig.Files.Read("/t/0.csv");
    CompareLines(rig.Files, first, std::size_t{data[0]} + 1);
    CompareValues(rig.Profile.GraphPoints, first);
    try {
        Open(rig);
    } catch (const TError&) { // told
    }
    return 0;
}

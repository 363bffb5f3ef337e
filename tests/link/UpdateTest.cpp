#include "core/Crc16.h"
#include "core/controls/Form.h"
#include "link/FirmwarePackage.h"
#include "link/ReadBackSnapshot.h"
#include "link/UpdateEvidence.h"
#include "link/UpdateStatus.h"
#include "rig/Test.h"

namespace tidewell::test {

namespace {

TEST(Crc16, FiguresOfTheProtocol) {
    const std::vector<std::uint8_t> bytes{1, 2, 3, 4};
    EXPECT_EQ(Crc16(Crc16Start, bytes, false), 0x2BA1);
    EXPECT_EQ(Crc16(Crc16Start, bytes, true), 41259);
}

// Mask of two images, the second one first; what was said (a: takes the restart, g: is gone behind it; of
// the images 1 and 2, t: taken, n: not taken, o: another version, .: nothing); the result, if it is known.
// The verdicts, strict and else, and the first image that was not taken.
TEST(UpdateEvidence, JudgesByWhatWasSaid) {
    const auto judged = [](std::string_view input) {
        constexpr std::string_view names[] = {"no restart", "no result",     "bad",
                                              "not taken",  "other version", "good"};
        const std::string said = Piece(input, 1);
        const auto result = TryToInteger(Piece(input, 2));
        TUpdateEvidence evidence(TFirmwarePackage{Piece(input, 0), 0, {TUpdateFile{}, TUpdateFile{}}});
        evidence.BeginRound();
        evidence.NoteRestart(said[0] == 'a', said[0] != 'g');
        evidence.NoteResult(result);
        for (std::size_t image = 0; image < 2; ++image) {
            if (said[image + 1] != '.')
                evidence.NoteTaken(image, said[image + 1] != 'n');
            evidence.NoteVersion(image, said[image + 1] != 'o');
        }
        const auto strict = evidence.Judge(true);
        EXPECT_EQ(evidence.RestartSeen(), said[0] != ' ');
        EXPECT_EQ(evidence.ResultKnown(), result.has_value());
        EXPECT_EQ(MayChange(strict), strict < EUpdateVerdict::ImageNotTaken);
        const std::string told = std::string(names[static_cast<std::size_t>(strict)]) + ", " +
                                 std::string(names[static_cast<std::size_t>(evidence.Judge(false))]);
        evidence.BeginRound(); // what was taken stays
        EXPECT_FALSE(evidence.RestartSeen() || evidence.ResultKnown());
        return told + ", " + std::to_string(evidence.FirstNotTaken());
    };
    ExpectRows(judged,
               {"11| tt|0 -> no restart, good, 2", "11|att|0 -> good, good, 2", "11|gtt|0 -> good, good, 2",
                "11|att| -> no result, no result, 2", "12|att| -> no result, no result, 2",
                "22|att| -> good, good, 2", // nothing is tested
                "11|att|1 -> bad, bad, 2", "11|att|2 -> bad, bad, 2", "11|att|-1 -> bad, bad, 2",
                "11|att|4 -> good, good, 2",   // of no image
                "11|att|256 -> good, good, 2", // above the byte that counts
                "11|att|257 -> bad, bad, 2", "12|att|1 -> good, good, 2", "12|att|2 -> bad, bad, 2",
                "22|ant|0 -> not taken, good, 0", "22|atn|0 -> not taken, good, 1",
                "20|a.t|0 -> good, good, 2",
                "11|ann|0 -> good, good, 2", // tested, so it came
                // Its test is the former image's where no road has led.
                "11|a.t|0 -> not taken, good, 0", "11|ato|0 -> other version, good, 2",
                "11|ano|2 -> bad, bad, 2", "22|ano|0 -> not taken, good, 0"});
    TUpdateEvidence evidence(TFirmwarePackage{"1", 1, std::vector<TUpdateFile>(33)});
    evidence.NoteResult(-1);
    EXPECT_TRUE(evidence.Failed(0) && evidence.Failed(31));
    EXPECT_FALSE(evidence.Failed(32));
}

// The rest of it stands in update.txt.
TEST(UpdateStatus, ShowsPercentAndTime) {
    TVirtualTime time;
    TForm form("NabtoDevice");
    TUpdateStatus status(form, time);
    status.ButUpdateStop.SetEnabled(false);
    status.Begin();
    EXPECT_TRUE(status.ButUpdateStop.Enabled());
    ExpectRows(
        [&](std::string_view input) {
            status.SetProgress(static_cast<std::uint32_t>(ToInteger64(Piece(input, 0))),
                               static_cast<std::uint32_t>(ToInteger64(Piece(input, 1))));
            return std::to_string(status.UpdateProgress.Position());
        },
        {"0|0 -> 0", "1|0 -> 0", "1|101 -> 0", "2|101 -> 1", "99|100 -> 99", "100|100 -> 100", "9|3 -> 100",
         "4294967294|4294967295 -> 99"});
    ExpectRows(
        [&](std::string_view seconds) {
            time.Advance(ToInteger(seconds) * 1000 + 999 - static_cast<int>(time.Milliseconds()));
            status.Tick();
            return status.LabUpdateElapsed.Caption();
        },
        {"0 -> Elapsed 0:00:00", "59 -> Elapsed 0:00:59", "60 -> Elapsed 0:01:00", "3599 -> Elapsed 0:59:59",
         "3600 -> Elapsed 1:00:00", "36061 -> Elapsed 10:01:01"});
    status.Begin();
    EXPECT_EQ(status.LabUpdateElapsed.Caption(), "Elapsed 0:00:00");
}

// The cycles; how many count as alike, how often they were not, and those kept.
TEST(ReadBackSnapshot, WaitsForTwoCyclesOfTheSameLength) {
    ExpectRows(
        [](std::string_view cycles) {
            TReadBackSnapshot snapshot;
            for (const std::string_view cycle : SplitStrictly(cycles, '|'))
                snapshot.SaveSetDatapointstringToStringlist(std::string(cycle));
            return std::to_string(snapshot.SetDatapointListCount) + ", " +
                   std::to_string(snapshot.Error_SetDatapointListCount) + ": " +
                   Join(snapshot.SetDatapointList, "|");
        },
        {"1 -> 1, 0: ", "1|22|33|4 -> 3, 0: 22|33", "x|æ |b; -> 3, 0: æ |b;", "x|1|22 -> 0, 1: 1|22",
         "x|1|22|x|1|2 -> 3, 1: 1|2", "x|1|22|x|1|22|x|1|22|x|1|22|1 -> 3, 4: 1|22"});
}

} // namespace

} // namespace tidewell::test

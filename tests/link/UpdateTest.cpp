#include "core/Crc16.h"
#include "core/controls/Form.h"
#include "link/FirmwarePackage.h"
#include "link/ReadBackSnapshot.h"
#include "link/UpdateEvidence.h"
#include "link/UpdateStatus.h"
#include "support/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>

namespace tidewell::test {

namespace {

TEST(Crc16, FiguresOfTheProtocol) {
    const std::vector<std::uint8_t> bytes{1, 2, 3, 4};
    EXPECT_EQ(Crc16(Crc16Start, bytes, false), 0x2BA1);
    EXPECT_EQ(Crc16(Crc16Start, bytes, true), 41259);
    EXPECT_EQ(Crc16(Crc16Start, {}, true), 0xFFFF);
    const auto part = std::span(bytes);
    EXPECT_EQ(Crc16(Crc16(Crc16Start, part.first(1), false), part.subspan(1), false), 0x2BA1);
}

// What may be claimed of an update of two images, by what the controller said.
TEST(UpdateEvidence, JudgesByWhatWasSaid) {
    using enum EUpdateVerdict;
    struct TCase {
        const char* Mask; // of the images, the second one first
        const char* Said; // a: takes the restart, g: is gone behind it; of the images 1 and 2, t: taken, n:
                          // not taken, o: another version, .: nothing
        std::optional<std::int32_t> Result;
        EUpdateVerdict Strict, Else;
        std::size_t NotTaken = 2;
    };
    for (const auto& [mask, said, result, strict, otherwise, notTaken] : std::vector<TCase>{
             {"11", " tt", 0, RestartNotSeen, Good},
             {"11", "att", 0, Good, Good},
             {"11", "gtt", 0, Good, Good},
             {"11", "att", {}, ResultUnknown, ResultUnknown},
             {"12", "att", {}, ResultUnknown, ResultUnknown},
             {"22", "att", {}, Good, Good}, // nothing is tested
             {"11", "att", 1, ImageBad, ImageBad},
             {"11", "att", 2, ImageBad, ImageBad},
             {"11", "att", -1, ImageBad, ImageBad},
             {"11", "att", 4, Good, Good},   // of no image
             {"11", "att", 256, Good, Good}, // above the byte that counts
             {"11", "att", 257, ImageBad, ImageBad},
             {"12", "att", 1, Good, Good},
             {"12", "att", 2, ImageBad, ImageBad},
             {"22", "ant", 0, ImageNotTaken, Good, 0},
             {"22", "atn", 0, ImageNotTaken, Good, 1},
             {"20", "a.t", 0, Good, Good},
             {"11", "ann", 0, Good, Good}, // tested, so it came
             // Its test is the former image's where no road has led.
             {"11", "a.t", 0, ImageNotTaken, Good, 0},
             {"11", "ato", 0, OtherVersion, Good},
             {"11", "ano", 2, ImageBad, ImageBad},
             {"22", "ano", 0, ImageNotTaken, Good, 0},
         }) {
        SCOPED_TRACE(std::string(mask) + " " + said);
        TUpdateEvidence evidence(TFirmwarePackage{mask, 0, {TUpdateFile{}, TUpdateFile{}}});
        evidence.BeginRound();
        evidence.NoteRestart(said[0] == 'a', said[0] != 'g');
        evidence.NoteResult(result);
        for (std::size_t image = 0; image < 2; ++image) {
            if (said[image + 1] != '.')
                evidence.NoteTaken(image, said[image + 1] != 'n');
            evidence.NoteVersion(image, said[image + 1] != 'o');
        }
        EXPECT_EQ(evidence.Judge(true), strict);
        EXPECT_EQ(evidence.Judge(false), otherwise);
        EXPECT_EQ(evidence.FirstNotTaken(), notTaken);
        EXPECT_EQ(evidence.RestartSeen(), said[0] != ' ');
        EXPECT_EQ(evidence.ResultKnown(), result.has_value());
        EXPECT_EQ(MayChange(strict), strict < ImageNotTaken);
        evidence.BeginRound(); // what was taken stays
        EXPECT_FALSE(evidence.RestartSeen() || evidence.ResultKnown());
        EXPECT_EQ(evidence.FirstNotTaken(), notTaken);
    }
    TUpdateEvidence evidence(TFirmwarePackage{"1", 1, std::vector<TUpdateFile>(33)});
    evidence.NoteResult(-1);
    EXPECT_TRUE(evidence.Failed(0) && evidence.Failed(31));
    EXPECT_FALSE(evidence.Failed(32));
}

TEST(UpdateStatus, ShowsPercentAndTime) {
    TVirtualTime time;
    TForm form("NabtoDevice");
    TUpdateStatus status(form, time);
    EXPECT_FALSE(status.PanelUpdate.Visible() || status.ButUpdateStop.Visible());
    status.Begin();
    EXPECT_TRUE(status.LedUpdate.Value() && status.Running() && status.ButUpdateStop.Enabled());
    EXPECT_EQ(status.LedUpdate.TrueColor(), TColor{0x0000C8FF}); // yellow
    struct TPercent {
        std::uint32_t Bytes, Length;
        int Position;
    };
    for (const auto& [bytes, length, position] : std::vector<TPercent>{{0, 0, 0},
                                                                       {1, 0, 0},
                                                                       {1, 101, 0},
                                                                       {2, 101, 1},
                                                                       {99, 100, 99},
                                                                       {100, 100, 100},
                                                                       {9, 3, 100},
                                                                       {0xFFFFFFFE, 0xFFFFFFFF, 99}}) {
        status.SetProgress(bytes, length);
        EXPECT_EQ(status.UpdateProgress.Position(), position) << bytes << "/" << length;
    }
    for (const auto& [seconds, text] : {std::pair{0, "0:00:00"},
                                        {59, "0:00:59"},
                                        {60, "0:01:00"},
                                        {3599, "0:59:59"},
                                        {3600, "1:00:00"},
                                        {36061, "10:01:01"}}) {
        time.Advance(seconds * 1000 + 999 - static_cast<int>(time.Milliseconds()));
        status.Tick();
        EXPECT_EQ(status.LabUpdateElapsed.Caption(), std::string("Elapsed ") + text);
    }
    status.End(EUpdatePhase::Succeeded);
    EXPECT_EQ(status.LedUpdate.TrueColor(), TALed::Green);
    status.Begin();
    EXPECT_EQ(status.LabUpdateElapsed.Caption(), "Elapsed 0:00:00");
    status.End(EUpdatePhase::Stopped);
    EXPECT_EQ(status.LedUpdate.TrueColor(), TALed::Red);
}

TEST(ReadBackSnapshot, WaitsForTwoCyclesOfTheSameLength) {
    struct TCase {
        std::vector<std::string> Cycles;
        int Count;
        int Errors;
        std::vector<std::string> List;
    };
    for (const auto& [cycles, count, errors, list] : std::vector<TCase>{
             {{"1; "}, 1, 0, {}},
             {{"1; ", "22; ", "33; ", "4; "}, 3, 0, {"22; ", "33; "}},
             {{"x", "æ; ", "b; "}, 3, 0, {"æ; ", "b; "}},
             {{"x", "1; ", "22; "}, 0, 1, {"1; ", "22; "}},
             {{"x", "1; ", "22; ", "x", "1; ", "2; "}, 3, 1, {"1; ", "2; "}},
             {{"x", "1", "22", "x", "1", "22", "x", "1", "22", "x", "1", "22", "1"}, 3, 4, {"1", "22"}},
         }) {
        TReadBackSnapshot snapshot;
        for (const auto& cycle : cycles)
            snapshot.SaveSetDatapointstringToStringlist(cycle);
        EXPECT_EQ(snapshot.SetDatapointListCount, count);
        EXPECT_EQ(snapshot.Error_SetDatapointListCount, errors);
        EXPECT_EQ(snapshot.SetDatapointList, list);
    }
}

} // namespace

} // namespace tidewell::test

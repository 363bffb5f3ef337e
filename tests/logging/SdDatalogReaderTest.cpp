#include "logging/SdDatalogReader.h"

#include "logging/DatalogRig.h"
#include "rig/Test.h"

// The dialogs around it, and where the labels stand, are told in tests/journeys/log.txt.
namespace tidewell::test {
namespace {

// Columns 3 and 18; the type codes, one of which is none, play no part.
constexpr const char* TwoChannels = "[GraphPoints]\r\n"
                                    "A=First;1;clBlue;3;0;1;250;;;;;;1;\r\n"
                                    "B=Off;1;clBlue;4;0;1;x;;;;;;0;\r\n"
                                    "C=Last;1;clRed;18;-5;0;x;;;;;;1;\r\n";

// A file of rows whose number is the low byte of their first field, "<line>=<text>" in place of one of its
// lines, counted from 1.
std::string File(std::string_view change = {}, const char* end = "\r\n") {
    std::string file;
    for (int line = 1; line <= 362; ++line) {
        const std::string number = std::to_string(line) + "=";
        if (change.starts_with(number)) {
            file += change.substr(number.size());
        } else if (line <= 360) {
            file += "001" + std::to_string(line - 1) + ";";
            for (int column = 1; column < 15; ++column)
                file += "000000;";
            file += "255255;";
        } else {
            file += line == 361 ? "2024;3;1;0;10;1;2;3;4;5" : "QX410_SD_datalog_by_Korvanium_A/S";
        }
        file += end;
    }
    return file;
}

class TSdRig : public TDatalogRig {
  public:
    explicit TSdRig(const std::string& profile = TwoChannels) : TDatalogRig(profile) {
        Dialogs.Opened = "/t/profile/card.SDpls";
        Files.Put(*Dialogs.Opened, profile);
    }
    // What is told at last: that of the error, or of the box before it.
    std::string Open(const std::vector<std::string>& contents) {
        Choose(contents);
        TSdDatalogReader reader{Needs};
        reader.OnOpenProfile = [this](const std::filesystem::path& path) { Profile.Open(path); };
        std::string outcome;
        try {
            reader.Open_sd_datalogClick();
            EXPECT_EQ(Page.CurrentLogStartDate, "29-2-2024");
        } catch (const TError& failure) {
            outcome = failure.what();
        }
        EXPECT_FALSE(FileProgressBar.Visible());
        return Dialogs.Boxes.size() > 1 ? Dialogs.Boxes.back().substr(0, 12) : outcome;
    }
    // Of the labels that the reader has added behind those of the page.
    std::size_t LabelCount() {
        for (std::size_t i = 12; i < Page.graph.Labels.Count(); ++i)
            EXPECT_TRUE(Page.graph.Labels[i].YAxisIndex() == 2 && Page.graph.Labels[i].Position().Y == 0.05);
        return Page.graph.Labels.Count() - 12;
    }
};

// What is told of one file; or its first value, and the first label: the stamp is that of the last row.
std::string Opened(const std::string& file) {
    TSdRig rig;
    const std::string told = rig.Open({file});
    const auto drawn = rig.Drawn();
    if (drawn.empty()) {
        EXPECT_EQ(rig.MemoEventLog.Lines().back(),
                  "SD-card datalog refused: " + (told == "SD Card file" ? "/t/0.log" : told));
        return told;
    }
    EXPECT_TRUE(drawn.size() == 360 && drawn[1] == 25.7 && drawn[359] == 61.5); // bytes are not masked
    EXPECT_TRUE(rig.Drawn(1).size() == 360 && rig.Drawn(1)[1] == 65530);
    EXPECT_EQ(rig.LabelCount(), 4U);
    return told + FixedText(drawn[0], 1) + " " + rig.Page.graph.Labels[12].Name();
}

} // namespace

TEST(SdDatalogReader, TellsWhatIsWrongOrReadsValuesAndStampsOfManyForms) {
    const std::string good = File();
    for (const std::string& bad : {std::string(), good.substr(good.find('\n') + 1), good.substr(0, 9000)})
        EXPECT_EQ(Opened(bad), "SD Card file");
    for (const std::string stamp : {"2023;2;29;0;10", "2023;0;1;0;0", "2023;13;1;0;10", "2023;1;0;0;0",
                                    "2023;1;32;0;0", "2023;1;257;0;10", "2023;1;1;24;0", "2023;1;1;-1;0",
                                    "2023;1;1;0;-1", "2023;1;1;0;60", "10000;1;1;0;0", "0;1;1;0;0"})
        EXPECT_EQ(Opened(File("361=" + stamp)),
                  "/t/0.log, line 361: '" + stamp + "' is not a valid date and time");
    for (const std::string& same : {File({}, "\n"), good.substr(0, good.size() - 2), "\xEF\xBB\xBF" + good,
                                    good + "1;2;3\r\n" + std::string(5000, 'x')})
        EXPECT_EQ(Opened(same), "25.6 18:11:00");
    ExpectRows([](std::string_view change) { return Opened(File(change)); },
               {"362=sd_datalog_by_Korvanium_A/S -> SD Card file",
                "362=SD_datalog_by_Korvanium_A/S  -> SD Card file",
                "361=2024;March;1;0;10 -> /t/0.log, line 361: 'March' is not a valid integer value",
                "361=2024;3;1;0 -> /t/0.log, line 361: '' is not a valid integer value",
                "8=00x000; -> /t/0.log, line 8: '00x' is not a valid integer value",
                "8=001; -> /t/0.log, line 8: '' is not a valid integer value",
                "360=; -> /t/0.log, line 360: '' is not a valid integer value",
                "4= -> /t/0.log, line 4: '' is not a valid integer value",
                "4=001000;001000; -> /t/0.log, line 4: '' is not a valid integer value",
                "362=SD_datalog_by_Korvanium_A/S -> 25.6 18:11:00",
                "1=  1  1;000000;255255 -> 25.7 18:11:00", // the last one stands for all that are missing
                "1=999999 -> 25674.3 18:11:00", "361=2024;3;1;0;0 -> 25.6 18:01:00",
                "361=2024;2;29;23;59 -> 25.6 18:00:00"});
    const std::string bad = "'x' is not a valid integer value (field 3 of row \"Bad\")";
    EXPECT_EQ(TSdRig("[GraphPoints]\r\nA=Bad;1;clRed;x;0;0;0;;;;;;1;\r\n").Open({good}), bad);
    EXPECT_EQ(TSdRig("[NabtoSection]\r\n").Open({good}),
              "/t/profile/card.SDpls: no row of [GraphPoints] is a channel");
}

TEST(SdDatalogReader, JoinsFilesAndCutsManyDown) {
    const std::string good = File();
    using TFiles = std::vector<std::string>;
    using enum EModalResult;
    // Files, the jump of the axis and the answer; what is told, rows, the last value, the axis and labels.
    for (const auto& [files, jump, answer, told, rows, last, end, labels] :
         std::vector<std::tuple<TFiles, int, EModalResult, std::string, std::size_t, double, double, int>>{
             {{good, good}, 721, Yes, "", 720, 61.5, 721, 8},
             {{good, good}, 720, Yes, "", 720, 61.5, 1440, 2},
             {{good, "bad", good}, 1000, Yes, "SD Card file", 720, 61.5, 1000, 8},
             {{good, "bad"}, 1000, Yes, "SD Card file", 360, 61.5, 1000, 4},
             {TFiles(27, good), 1000, Yes, "", 9720, 61.5, 10720, 20},
             {TFiles(28, good), 1000, Yes, "Datalog size", 1008, 60.6, 2008, 3},
             {TFiles(28, good), 1000, No, "Datalog size", 10080, 61.5, 11080, 21}}) {
        TSdRig rig;
        rig.Page.XAxisJump = jump;
        rig.Dialogs.YesOrNo = answer;
        EXPECT_EQ(rig.Open(files), told);
        EXPECT_TRUE(rig.Drawn().size() == rows && rig.Drawn().back() == last) << end;
        EXPECT_EQ(rig.Page.graph.XAxis.Max.DataValue(), end);
        EXPECT_EQ(rig.LabelCount(), labels) << end;
    }
}

} // namespace tidewell::test

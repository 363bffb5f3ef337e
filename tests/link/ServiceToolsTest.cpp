#include "ServiceFixture.h"
#include "core/Errors.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

using TBytes = std::vector<std::uint8_t>;

const std::string eepromFile = "EElist_123456789012_02-03-20260800.csv";

// A record of 5 March 2024, 07:30, with -3 as its second value and the rest counted up.
TBytes Record(int firstValue) {
    TBytes bytes;
    const auto add = [&bytes](int word) {
        bytes.push_back(static_cast<std::uint8_t>(word >> 8));
        bytes.push_back(static_cast<std::uint8_t>(word));
    };
    add(0x3065);
    add(0x071E);
    add(firstValue);
    add(-3);
    for (int value = 2; value < 126; ++value)
        add(value);
    return bytes;
}

std::string RowText(int firstValue) {
    std::string text = "1;05-03-2024;07:30:00;" + std::to_string(firstValue) + ";-3;";
    for (int value = 2; value < 126; ++value)
        text += std::to_string(value) + ";";
    return text;
}

const std::string header = ";[HeaderStart]x[HeaderEnd]\r\n";
const std::string flashFile = "FDlog_123456789012_02-03-20260800.csv";

TEST_F(TServiceFixture, TellsEachStepOfAReadOfTheEeprom) {
    Library.Chunks = {{2, 1}, {4, 3, 6, 5}};
    EXPECT_EQ(Eeprom.ReadEeprom(512, 6).Words, "513;1027;1541;");
    EXPECT_THAT(Memo(),
                ElementsAre("Preparing Stream... Read Eeprom values", "Read Address: 512", "Read Length: 6",
                            "Preperation Success", "Starting Stream...", "Stream Started",
                            "Reading Stream...", "Done Reading", "Stream is Closed now "));
    EXPECT_EQ(Eeprom.ReadEeprom(512, 0).Words, "");
    EXPECT_THAT(Memo(), IsEmpty());
}

TEST_F(TServiceFixture, ListsEepromWordsInAFile) {
    Tools.butGetEepromValues.OnClick(); // no words asked for
    EXPECT_THAT(Calls(), IsEmpty());
    Tools.RErrorlogStart.SetText("512");
    Tools.RErrorlogLength.SetText("3");
    Library.Chunks = {{2, 1, 4, 3, 6, 5}};
    Dialogs.ExpectMessage("done... download");
    Tools.butGetEepromValues.OnClick();
    EXPECT_EQ(FileText(eepromFile), "EENum- 512;513\r\nEENum- 514;1027\r\nEENum- 516;1541\r\n");

    Status = 1; // the list is saved empty
    Dialogs.ExpectMessage("done... download");
    Tools.butGetEepromValues.OnClick();
    EXPECT_EQ(FileText("EElist_123456789012_02-03-20260800-2.csv"), "");

    for (const char* bad : {"three", "", "99999999999999999999"}) {
        Tools.RErrorlogLength.SetText(bad);
        EXPECT_THROW(Tools.butGetEepromValues.OnClick(), EConvertError) << bad;
    }
    for (const char* beyond : {"-1", "2147483648"}) {
        Tools.RErrorlogLength.SetText(beyond);
        EXPECT_THROW(Tools.butGetEepromValues.OnClick(), ERangeError) << beyond;
    }
    Status = 0;
    Tools.RErrorlogLength.SetText("1");
    Library.Chunks = {{1, 2}, {1, 2}};
    Files.Room = 3;
    EXPECT_THROW(Tools.butGetEepromValues.OnClick(), EInOutError);
    EXPECT_FALSE(Use.Taken());
    OnRead = [this] { Open = false; };
    Tools.butGetEepromValues.OnClick(); // closed meanwhile
    EXPECT_EQ(Files.List("/app/log/userlog", "*").size(), 2U);
}

TEST_F(TServiceFixture, TheWriteTestTellsItsEnd) {
    struct TCase {
        int Status;
        std::vector<std::string> Failing; // entry points
        std::string Shown;
        std::vector<std::string> Calls;
    };
    const std::string query = "flashWrite.json?json={\"request\":{\"address\":\"0\",\"length\":\"10\"}}";
    for (const auto& [status, failing, shown, calls] : std::vector<TCase>{
             {0, {}, "Write Success", {query, "nabtoStreamOpen", "nabtoStreamWrite", "nabtoStreamClose"}},
             {0,
              {"nabtoStreamWrite"},
              "Stream Error",
              {query, "nabtoStreamOpen", "nabtoStreamWrite", "nabtoStreamClose"}},
             {0, {"nabtoStreamOpen"}, "Status: 0", {query, "nabtoStreamOpen", "nabtoStreamClose"}},
             {5, {}, "Unable to change to correct Stream Mode", {query}}}) {
        Status = status;
        for (const auto& name : failing)
            Library.Results[name] = {3};
        Dialogs.AllowMessage("status 3");
        Tools.BtnWriteFlash.OnClick();
        EXPECT_EQ(LblJson.Caption(), shown);
        EXPECT_EQ(Calls(), calls) << shown;
    }
    EXPECT_EQ(Library.Written, (TBytes{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_FALSE(Tools.BtnWriteFlash.Visible() || Tools.BtnWriteFlash.Enabled() || Tools.Button1.Visible());
}

TEST_F(TServiceFixture, TheEditsAndTheSliderFollowEachOther) {
    const auto edits = [this] {
        return Flash.DT_MaskeditStartDate.Text() + " " + Flash.DT_MaskeditEndDate.Text();
    };
    EXPECT_EQ(edits(), "T:000S:00M:00 T:146S:20M:16");
    Flash.DayTracker.SetUpperPosition(46);
    EXPECT_EQ(edits(), "T:000S:00M:00 T:001S:00M:32");

    struct TCase {
        std::string Typed;
        int Position;
    };
    for (const auto& [typed, position] : std::vector<TCase>{{"T:146S:00M:00", 6570},
                                                            {"T:5S:00M:00", 225},
                                                            {"T:___S:02M:__", 3},
                                                            {"T:000S:00M:31", 0},
                                                            {"T:999S:99M:99", 6608},
                                                            {"nothing", 0}}) {
        Flash.DT_MaskeditEndDate.SetText(typed);
        Flash.DT_MaskeditEndDate.OnExit();
        EXPECT_EQ(Flash.DayTracker.UpperPosition(), position) << typed;
    }
    // A thumb takes the other one along.
    Flash.DT_MaskeditStartDate.SetText("T:002S:00M:00");
    Flash.DT_MaskeditStartDate.OnExit();
    EXPECT_EQ(edits(), "T:002S:00M:00 T:002S:00M:00");

    Flash.MischStrings.adjustdaysheader = "Days";
    int focus = 0;
    const auto focused = Flash.DT_GetData.FocusRequested.Connect([&focus] { ++focus; });
    for (const auto& [typed, position] :
         std::vector<TCase>{{"200", 6570}, {"1 4", 630}, {"-5", 0}, {"99999999999", 0}, {"3 days", 135}}) {
        Dialogs.ExpectInput("Days", typed);
        Flash.DT_MaskeditEndDate.OnClick();
        EXPECT_EQ(Dialogs.LastInputText, "0");
        EXPECT_EQ(Flash.DayTracker.UpperPosition(), position) << typed;
    }
    for (const auto& answer : {std::optional<std::string>(), std::optional<std::string>("")}) {
        Dialogs.ExpectInput("Days", answer);
        Flash.DT_MaskeditStartDate.OnClick();
    }
    EXPECT_EQ(focus, 5);
    EXPECT_EQ(Flash.DayTracker.UpperPosition(), 135);
}

// Reads of any part of the flash end in a file too.
class TReadFlash : public TServiceFixture {
  protected:
    TReadFlash() {
        Flash.QuestionDatalog = "Show?";
        Library.Chunks = {Record(5)};
    }
    std::string Read(const std::string& length) {
        Tools.editReadLength.SetText(length);
        Tools.BtnReadFlash.OnClick();
        return FileText(flashFile);
    }
};

TEST_F(TReadFlash, TakesWholeRecordsAndOffersWhatIsThere) {
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Library.Chunks.back().push_back(0); // a remainder is dropped
    EXPECT_EQ(Read("257"), RowText(5) + "\r\n" + header);
    EXPECT_THAT(Calls(),
                ElementsAre("flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"257\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    Tools.editReadAddress.SetText("all");
    Library.Chunks = {{1, 2, 3}};
    World.Profile.FlashPage.FlashLogProfile.clear();
    Dialogs.ExpectMessage("Show?", EModalResult::Yes); // of the same minute, and nothing to show it with
    Read("3");
    EXPECT_EQ(FileText("FDlog_123456789012_02-03-20260800-2.csv"), header);
    for (const char* length : {"0", "-4096", "many"})
        Read(length);
    EXPECT_THAT(Calls(),
                ElementsAre("flashRead.json?json={\"request\":{\"address\":\"131072\",\"length\":\"3\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    EXPECT_THAT(Events, ElementsAre("StopRunningLog", "StopRunningLog"));
}

TEST_F(TReadFlash, HasTheDeviceForItself) {
    Dialogs.ExpectMessage("Show?", EModalResult::No);
    Use.AddControls({&Tools.BtnReadFlash});
    bool locked = false;
    OnRead = [&] {
        locked = !Tools.BtnReadFlash.Enabled();
        Flash.DownloadFlashLog();
        Flash.ButFlashDatalogClick();
        Tools.BtnReadFlash.OnClick();
        Tools.BtnWriteFlash.OnClick();
        Tools.Button1.OnClick();
        Tools.ExtendedSystemVersion.OnClick();
    };
    EXPECT_EQ(Read("256"), RowText(5) + "\r\n" + header);
    EXPECT_TRUE(locked && Tools.BtnReadFlash.Enabled());
    EXPECT_FALSE(Flash.PanelFDDatalog.Visible());
    EXPECT_THAT(Calls(), ElementsAre(testing::_, "nabtoStreamOpen", "nabtoStreamClose"));
}

TEST_F(TReadFlash, AFileThatCannotBeWrittenIsSavedElsewhere) {
    const std::string full = "Cannot write /app/log/userlog/" + flashFile + ": No space left on device";
    Files.Room = 10;
    Dialogs.ExpectMessage(full);
    Dialogs.ExpectSaveFile("Flash Datalog", std::nullopt);
    EXPECT_EQ(Read("256"), "none");

    Files.Room = static_cast<std::size_t>(-1);
    Files.Unwritable.insert("/app/log");
    Library.Chunks = {Record(6)};
    Dialogs.ExpectMessage("Cannot make directory /app/log/userlog: Permission denied");
    Dialogs.ExpectSaveFile("Flash Datalog", "/usb/mine.csv");
    Dialogs.ExpectMessage("Show?", EModalResult::Yes);
    Read("256");
    EXPECT_EQ(Files.Read("/usb/mine.csv"), RowText(6) + "\r\n" + header);
    EXPECT_THAT(Events, IsSupersetOf({"show /app/profile/p_Flash.pls /usb/mine.csv"}));
}

TEST_F(TReadFlash, EndsWithTheProgramOrByTheUser) {
    Library.Chunks = {TBytes(100), Record(5)};
    Flash.CurrentLogBlock = 1;
    Flash.DayTracker.SetUpperPosition(2);
    Dialogs.ExpectMessage("The flash is still being read. Stop reading?", EModalResult::No);
    Dialogs.ExpectMessage("The flash is still being read. Stop reading?", EModalResult::Yes);
    OnRead = [this] {
        OnRead = nullptr;
        EXPECT_FALSE(Flash.MayClose());
        EXPECT_TRUE(Flash.MayClose());
    };
    Flash.DownloadFlashLog();
    EXPECT_TRUE(Flash.MayClose());
    EXPECT_FALSE(Flash.Stopped());
    // The stream is closed, and no other segment asked for.
    EXPECT_THAT(Calls(), ElementsAre(testing::_, "nabtoStreamOpen", "nabtoStreamClose"));

    for (const bool duringQuery : {true, false}) {
        Open = true;
        (duringQuery ? OnQuery : OnRead) = [this] { Open = false; };
        Flash.DownloadFlashLog();
        EXPECT_TRUE(Flash.MayClose());
        EXPECT_EQ(Calls().size(), duringQuery ? 1U : 3U);
        OnQuery = nullptr;
    }
    EXPECT_TRUE(Files.List("/app/log/userlog", "*").empty());
}

} // namespace

} // namespace tidewell::test

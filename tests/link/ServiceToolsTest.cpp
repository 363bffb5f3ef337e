#include "ServiceFixture.h"
#include "core/Errors.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using TBytes = std::vector<std::uint8_t>;

const std::string eepromFile = "EElist_123456789012_02-03-20260800.csv";

TEST(EepromReader, PairsOfBytesAreWords) {
    EXPECT_EQ(BytesToWordList(TBytes{2, 1, 4, 3}), "513;1027;");
    EXPECT_EQ(BytesToWordList(TBytes{255, 255, 0, 0}), "65535;0;");
    EXPECT_EQ(BytesToWordList(TBytes{}), "");
    EXPECT_EQ(BytesToWordList(TBytes{1, 2, 3}), "");
}

TEST_F(TServiceFixture, ReadsEepromAsWords) {
    Library.Chunks = {{2, 1}, {4, 3, 6, 5}};
    EXPECT_EQ(Eeprom.ReadEeprom(512, 6).Words, "513;1027;1541;");
    EXPECT_THAT(Calls(),
                ElementsAre("eepReadRaw.json?json={\"request\":{\"address\":\"512\",\"length\":\"6\"}}",
                            "nabtoStreamOpen", "nabtoStreamClose"));
    EXPECT_THAT(Memo(),
                ElementsAre("Preparing Stream... Read Eeprom values", "Read Address: 512", "Read Length: 6",
                            "Preperation Success", "Starting Stream...", "Stream Started",
                            "Reading Stream...", "Done Reading", "Stream is Closed now "));
    EXPECT_EQ(Eeprom.ReadEeprom(512, 0).Words, "");
    EXPECT_THAT(Memo(), IsEmpty());
    Library.Chunks = {{1, 2, 3}};
    EXPECT_EQ(Eeprom.ReadEeprom(0, 3).Words, "");
    EXPECT_EQ(Memo().back(), "Stream is Closed now ");
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

} // namespace

} // namespace tidewell::test

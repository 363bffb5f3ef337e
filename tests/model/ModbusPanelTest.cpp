#include "model/ModbusPanel.h"

#include "rig/Test.h"

namespace tidewell::test {

namespace {

using testing::ElementsAre;

class ModbusPanel : public testing::Test {
  protected:
    void Load(const std::string& profile) {
        Files.Put("/t/M3.pls", profile);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath("/t/M3.pls");
        Panel.InitQuestionStringlistStructures();
    }
    // Each device with its questions and the cells of their rows.
    std::vector<std::string> Devices() const {
        std::vector<std::string> told;
        for (const TMDevice& device : Panel.DeviceList) {
            told.push_back(device.Name + (device.Enabled ? " on" : " off"));
            for (std::size_t i = 0; i < device.ReadList.size(); ++i) {
                told.push_back("R " + device.ReadList[i]);
                const TStringTable& grid = device.ReadListText.at(i);
                for (std::size_t row = 0; row < grid.RowCount(); ++row)
                    told.push_back(grid.Cell(0, row) + grid.Cell(1, row) + grid.Cell(2, row) +
                                   grid.Cell(3, row));
            }
            for (const std::string& question : device.WriteList)
                told.push_back("W " + question);
        }
        return told;
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TModbusPanel Panel{Files, Time};
};

// "Device" counts with its capital only.
const std::string twoDevices =
    "[MyDevice2]\r\nenable=TRUE\r\nRead1=12;3;100;2;Flow;\r\nnote=ignored\r\nWriteAll=12;6;0;1;None;\r\n"
    "R0=12;4;0;9;Missing;\r\nr0=12;3;0;9;Flow;\r\n"
    "[device2]\r\nEnable=1\r\nR1=1;3;0;1;L;\r\n"
    "[OffDevice]\r\nEnable=0\r\nR= 7 ;3;100;2;Flow;\r\nR2=7;4;0;1;Flow;\r\n"
    "[Flow]\r\nK2=Zeta;41;\r\nK1=alpha;40;\r\n";

} // namespace

TEST_F(ModbusPanel, ReadsDevicesQuestionsAndListRows) {
    Load(twoDevices);
    EXPECT_THAT(Devices(),
                ElementsAre("MyDevice2 on", "R 12;3;100;2;Flow;MyDevice2;0;", "0alpha40K1", "1Zeta41K2",
                            "R 12;4;0;9;Missing;MyDevice2;3;", "W 12;6;0;1;None;MyDevice2;2;",
                            "OffDevice off", "R 7 ;3;100;2;Flow;OffDevice;0;", "0alpha40K1", "1Zeta41K2",
                            "R 7;4;0;1;Flow;OffDevice;1;", "0alpha40K1", "1Zeta41K2"));
    EXPECT_THAT(Panel.CycleReadList,
                ElementsAre("12;3;100;2;Flow;MyDevice2;0;", "12;4;0;9;Missing;MyDevice2;3;"));
    EXPECT_EQ(DatalogHeader(Panel, "/p"),
              ";[HeaderStart]12;3;100;2;Flow;MyDevice2;0;12;4;0;9;Missing;MyDevice2;3;7 ;3;"
              "100;2;Flow;OffDevice;0;7;4;0;1;Flow;OffDevice;1;/p[HeaderEnd]");
}

TEST_F(ModbusPanel, TakesOnlySectionsOfDevices) {
    Load("[DeviceList]\nEnabled=1\nR1=1;3;0;1;L;\n"              // no key "Enable"
         "[BareDevice]\nEnable=1\n"                              // one row leaves it off
         "[LateDevice]\nR1=False\nEnable=1\nR2=5\nR3=1;3;\n=x\n" // the first row decides, whatever its key
         "[L]\nK=a;\n");
    // A value without its last ';' runs into the device's name, and a question too short for a list names
    // another.
    EXPECT_THAT(Devices(),
                ElementsAre("BareDevice off", "LateDevice off", "R 5LateDevice;1;", "R 1;3;LateDevice;2;"));
    EXPECT_TRUE(Panel.CycleReadList.empty());
    EXPECT_THROW(Load("[ADevice]\nEnable=1\nR1=1;3;0;1;L;\n[BDevice]\nEnable=yes\nR1=1;\n[L]\nK=a;\n"),
                 EConvertError);
    EXPECT_EQ(Panel.DeviceList.Count(), 0U); // all of them, or none
}

TEST_F(ModbusPanel, FindsDevicesByName) {
    Load(twoDevices + "[BareDevice]\nEnable=1\n[WordDevice]\nEnable=1\nR=one;3;\n");
    ExpectRows([&](std::string_view name) { return std::to_string(Panel.GetModbusIDFromDeviceName(name)); },
               {"BareDevice -> List index out of bounds (0)", "MyDevice2 -> 12", "OffDevice -> 7",
                "offdevice -> -1", "WordDevice -> -1"});
    Panel.DeviceList.Add(TMDevice(Panel.DeviceList.GetDevice(0)));
    ExpectRows([&](std::string_view name) { return std::to_string(Panel.GetSelectedDeviceListNumber(name)); },
               {"Other -> -1", "OffDevice -> 1", "MyDevice2 -> 4"});
    EXPECT_THROW(Panel.DeviceList.GetDevice(5), EListError);
    std::vector<std::string> list{"stale"};
    for (const int none : {-1, 5})
        EXPECT_THROW(Panel.GetSelectedDeviceSetpointReadlist(none, list), EListError);
    Panel.GetSelectedDeviceSetpointReadlist(0, list);
    EXPECT_THAT(list, ElementsAre("0"));
    EXPECT_EQ(Panel.GetProfileListCellsNameValue("OffDevice", list, 2, 3), 2U);
    EXPECT_THAT(list, ElementsAre("1=40", "2=41"));
    EXPECT_EQ(Panel.GetProfileListCellsNameValue("Other", list, 2, 3) + list.size(), 0U);
}

} // namespace tidewell::test

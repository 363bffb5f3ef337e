#include "model/ModbusPanel.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* panelPath = "/t/M3_english.pls";

class ModbusPanel : public testing::Test {
  protected:
    void Load(const std::string& profile) {
        Files.Put(panelPath, profile);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath(panelPath);
        Panel.InitQuestionStringlistStructures();
    }
    const TMDevice& Device(std::size_t index) const { return Panel.DeviceList.GetDevice(index); }

    TMemoryFiles Files;
    TVirtualTime Time;
    TModbusPanel Panel{Files, Time};
};

// "Device" counts with its capital only.
const std::string twoDevices =
    "[MyDevice2]\r\nenable=TRUE\r\nRead1=12;3;100;2;Flow;\r\nnote=ignored\r\nWriteAll=12;6;0;1;None;\r\n"
    "R0=12;4;0;9;Missing;\r\nr0=12;3;0;9;Flow;\r\n"
    "[device2]\r\nEnable=1\r\nR1=1;3;0;1;L;\r\n"
    "[OffDevice]\r\nEnable=0\r\nR= 7 ;3;100;2;Flow;\r\n"
    "[Flow]\r\nK2=Zeta;41;0;9;0;0;A102;4;1;;;;;;Air;;;\r\nK1=Alpha;40;0;9;0;0;A101;3;1;;;;;;Air;;;\r\n";

} // namespace

TEST_F(ModbusPanel, ReadsDevicesQuestionsAndListRows) {
    Load(twoDevices);
    ASSERT_EQ(Panel.DeviceList.Count(), 2U);
    EXPECT_EQ(Device(0).Name, "MyDevice2");
    EXPECT_TRUE(Device(0).Enabled && !Device(1).Enabled);
    EXPECT_THAT(Device(0).ReadList,
                ElementsAre("12;3;100;2;Flow;MyDevice2;0;", "12;4;0;9;Missing;MyDevice2;3;"));
    EXPECT_THAT(Device(0).WriteList, ElementsAre("12;6;0;1;None;MyDevice2;2;"));
    ASSERT_EQ(Device(0).ReadListText.size(), 2U);
    const TStringTable& grid = Device(0).ReadListText[0];
    ASSERT_EQ(grid.RowCount(), 2U);
    EXPECT_EQ(grid.Cell(0, 0) + grid.Cell(1, 0) + grid.Cell(0, 1) + grid.Cell(1, 1), "0Alpha1Zeta");
    EXPECT_EQ(grid.Cell(15, 1) + grid.Cell(18, 1), "AirK2");
    EXPECT_EQ(Device(0).ReadListText[1].RowCount(), 0U);
    EXPECT_EQ(Panel.CycleReadList, Device(0).ReadList);
    EXPECT_EQ(Panel.WriteList, Device(0).WriteList);
}

TEST_F(ModbusPanel, TakesOnlySectionsOfDevices) {
    Load("[NabtoDevice]\nQ1=0;3;1;1;\n"               // no key "Enable"
         "[DeviceList]\nEnabled=1\nR1=1;3;0;1;L;\n"   // nor here
         "[BareDevice]\nEnable=1\n"                   // one row leaves it off
         "[LateDevice]\nR1=False\nEnable=1\nR2=5\n"); // the first row decides, whatever its key
    ASSERT_EQ(Panel.DeviceList.Count(), 2U);
    EXPECT_EQ(Device(0).Name, "BareDevice");
    EXPECT_FALSE(Device(0).Enabled || Device(1).Enabled);
    // A value without its last ';' runs into the device's name, and a short question has no list.
    EXPECT_THAT(Device(1).ReadList, ElementsAre("5LateDevice;1;"));
    EXPECT_EQ(Device(1).ReadListText.at(0).RowCount(), 0U);
    EXPECT_THAT(Panel.CycleReadList, IsEmpty());
}

TEST_F(ModbusPanel, EmptiesForABadOrMissingProfileAndStaysWithoutAFolder) {
    Load(twoDevices);
    Panel.SetMpanelWorkingpath("");
    Panel.SetMpanelPLSpath("/t/gone.pls");
    Panel.InitQuestionStringlistStructures();
    EXPECT_EQ(Panel.DeviceList.Count(), 2U);
    Panel.SetMpanelWorkingpath("/t");
    Panel.InitQuestionStringlistStructures();
    EXPECT_EQ(Panel.DeviceList.Count() + Panel.CycleReadListGetNumbersInList(), 0U);
    EXPECT_THROW(Panel.DeviceList.SetDevice(0, {}), EListError);
    EXPECT_THROW(Load("[ADevice]\nEnable=1\nR1=1;3;0;1;L;\n[BDevice]\nEnable=yes\nR1=1;\n[L]\nK=a;\n"),
                 EConvertError);
    std::vector<std::string> map;
    EXPECT_EQ(Panel.GetProfileListCellsNameValue("ADevice", map, 8, 7), 0U);
}

TEST_F(ModbusPanel, FindsDevicesByName) {
    Load(twoDevices + "[BareDevice]\nEnable=1\n[WordDevice]\nEnable=1\nR=one;3;\n");
    for (const auto& [name, id] :
         {std::pair{"MyDevice2", 12}, {"OffDevice", 7}, {"offdevice", -1}, {"WordDevice", -1}})
        EXPECT_EQ(Panel.GetModbusIDFromDeviceName(name), id) << name;
    EXPECT_THROW(Panel.GetModbusIDFromDeviceName("BareDevice"), EListError);

    EXPECT_EQ(Panel.GetSelectedDeviceListNumber("Other"), -1);
    Panel.DeviceList.Add(Device(0));
    EXPECT_EQ(Panel.GetSelectedDeviceListNumber("MyDevice2"), 4);
    std::vector<std::string> list{"stale"};
    Panel.GetSelectedDeviceSetpointReadlist(0, list);
    EXPECT_THAT(list, ElementsAre("0"));
    for (const int index : {-1, 5})
        EXPECT_THROW(Panel.GetSelectedDeviceSetpointReadlist(index, list), EListError);
    EXPECT_EQ(Panel.GetProfileListCellsNameValue("OffDevice", list, 2, 7), 2U);
    EXPECT_THAT(list, ElementsAre("101=40", "102=41"));
    EXPECT_EQ(Panel.GetProfileListCellsNameValue("Other", list, 2, 7), 0U);
    EXPECT_THAT(list, IsEmpty());
}

TEST_F(ModbusPanel, KeepsAnswersOfTheFirstDevice) {
    Panel.SetResponse(0, "lost");
    Load(twoDevices);
    EXPECT_EQ(Panel.ModbusValueFromString("MyDevice2", 1, 1), -1);
    Panel.SetResponse(0, "1; 2; ");
    Panel.SetResponse(5, "error");
    Panel.SetResponse(0, "11; 22; x; ");
    EXPECT_THAT(Device(0).ResponsList, ElementsAre("11; 22; x; ", "error"));
    for (const auto& [question, field, value] :
         {std::tuple{1, 2, 22}, {1, 3, 0}, {1, 4, -1}, {1, 0, -1}, {2, 1, -1}, {3, 1, -1}, {0, 1, -1}})
        EXPECT_EQ(Panel.ModbusValueFromString("MyDevice2", static_cast<std::size_t>(question),
                                              static_cast<std::size_t>(field)),
                  value)
            << question << " " << field;
    EXPECT_THROW(Panel.ModbusValueFromString("Other", 1, 1), EListError);
}

TEST_F(ModbusPanel, WaitsAtMostTwoSecondsForAWrite) {
    Panel.WaitForWriteComplete();
    EXPECT_THAT(Time.Sleeps, IsEmpty());
    Panel.doWrite = true;
    Panel.WaitForWriteComplete();
    EXPECT_EQ(Time.Sleeps, std::vector<int>(20, 100));
    Time.After(250, [this] { Panel.doWrite = false; });
    Panel.WaitForWriteComplete();
    EXPECT_EQ(Time.Sleeps, std::vector<int>(23, 100));
}

} // namespace tidewell::test

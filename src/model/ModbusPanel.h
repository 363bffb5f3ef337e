#pragma once

#include "core/controls/Lists.h"
#include "core/controls/StringGrid.h"
#include "core/ports/IFiles.h"
#include "core/ports/IWait.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class TIniFile;
class TIniSection;

// One device of the open profile. A question row reads
// "<device number>;<function>;<start address>;<count>;<list section>;<device name>;<question number>;".
struct TMDevice {
    bool Enabled = false;
    std::string Name; // of the device's section
    std::vector<std::string> ReadList;
    std::vector<std::string> WriteList;
    std::vector<std::string> ResponsList; // raw answers, one per poll question; only device 0's is used
    // The list rows of each read question, same order as ReadList; column 0 is the row's number.
    std::vector<TStringTable> ReadListText;
};

// A reference to a device lives until the next profile load.
class TMDeviceList {
  public:
    std::size_t Count() const { return Devices.size(); }
    // Throw EListError for an index beyond the end.
    TMDevice& GetDevice(std::size_t index);
    const TMDevice& GetDevice(std::size_t index) const;
    void SetDevice(std::size_t index, TMDevice device);

    void Add(TMDevice device);
    void Clear() { Devices.clear(); }
    auto begin() { return Devices.begin(); }
    auto end() { return Devices.end(); }
    auto begin() const { return Devices.begin(); }
    auto end() const { return Devices.end(); }

  private:
    std::vector<TMDevice> Devices;
};

// The devices that the open profile describes, with their questions and list rows. It talks to no device.
class TModbusPanel {
  public:
    TModbusPanel(const IFiles& files, IWait& wait) : Files(files), Wait(wait) {}

    void SetMpanelSystempath(const std::filesystem::path& path) { GlobalSysteminiPath = path; }
    void SetMpanelWorkingpath(const std::filesystem::path& path) { GlobalFilePath = path; }
    void SetMpanelPLSpath(const std::filesystem::path& path) { GlobalPlsFilePath = path; }

    // Rebuilds all lists from the profile at GlobalPlsFilePath; a missing one leaves them empty. Throws
    // EConvertError, naming file, section and value, for an "Enable" that is no boolean.
    void InitQuestionStringlistStructures();
    // These two do nothing, or make empty grids, while GlobalFilePath is empty.
    void ReadDeviceListFromFile();
    void CreateInputGrids();

    // Field 0 of the first read question of that device, -1 if there is no such device or it is no integer.
    // Throws EListError for a device without read questions.
    std::int32_t GetModbusIDFromDeviceName(std::string_view name) const;

    void ClearCycleReadList();
    void CycleReadListAddQestion(const std::string& row);
    std::size_t CycleReadListGetNumbersInList() const { return CycleReadList.size(); }
    std::string CycleReadListGetListText() const; // each row followed by a line end

    // Part of the contract, these two and SetDevice of the list; nothing here calls them.
    // Question and field count from 1. -1 if the device's ResponsList has no such answer or field; a field
    // that is no integer is 0. Throws EListError for a name that is not in the list.
    std::int32_t ModbusValueFromString(std::string_view name, std::size_t question, std::size_t field) const;
    // Waits while doWrite is set, at most 2 seconds.
    void WaitForWriteComplete();
    // Puts the answer of a poll question, from 0, into ResponsList of device 0: it replaces the one at that
    // index, or is appended. Does nothing without a device.
    void SetResponse(std::size_t queryIndex, const std::string& text);

    // Index of the last device of that name, -1 if there is none.
    int GetSelectedDeviceListNumber(std::string_view name) const;
    // Indexes, as text, of that device's read questions with function "3". Throws EListError.
    void GetSelectedDeviceSetpointReadlist(int deviceIndex, std::vector<std::string>& list) const;
    // Refills the target with "<key>=<value>", digits and "-" only, for every list row of every read question
    // of that device with function "3"; gives their number, 0 for an unknown device.
    std::size_t GetProfileListCellsNameValue(std::string_view name, std::vector<std::string>& target,
                                             std::size_t valueColumn, std::size_t keyColumn) const;

    std::filesystem::path GlobalSysteminiPath; // the system file
    std::filesystem::path GlobalFilePath;      // the folder that the program works in
    std::filesystem::path GlobalPlsFilePath;   // the open profile

    TMDeviceList DeviceList;                // disabled devices too
    std::vector<std::string> CycleReadList; // questions of the enabled devices
    std::vector<std::string> WriteList;
    std::size_t CycleReadListCount = 0;
    bool doWrite = false;
    bool doTest = false;
    bool WannaClose = false;
    std::string PingTestModbusID;
    int SelectedDevice = 0; // index of the device last clicked in the tree; stale after a profile load
    TMemo MemoDebug{"MemoDebug"};

  private:
    static TMDevice ReadDevice(const TIniFile& profile, const std::string& name, const TIniSection& section);

    const IFiles& Files;
    IWait& Wait;
};

// The header line of a datalog, without line end: the read questions of all devices, then the profile's path.
std::string DatalogHeader(const TModbusPanel& panel, const std::filesystem::path& currentprofilefile);

} // namespace tidewell

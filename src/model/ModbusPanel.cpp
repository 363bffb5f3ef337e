#include "model/ModbusPanel.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

constexpr std::string_view setpointFunction = "3";

bool HoldsKey(const TIniSection& section, std::string_view key) {
    return std::ranges::any_of(
        section.Rows(), [&](const auto& row) { return SameText(row.Name, key); });
}

// The rows of a list section as the grids keep them: the key's name is the last field.
std::vector<std::string> ListRows(const TIniSection& section) {
    std::vector<std::string> rows;
    rows.reserve(section.Count());
    for (const auto& row : section.Rows())
        rows.push_back(row.Value + row.Name + ";");
    return rows;
}

} // namespace

TMDevice& TMDeviceList::GetDevice(std::size_t index) {
    if (index >= Devices.size())
        throw EListError(index);
    return Devices[index];
}

const TMDevice& TMDeviceList::GetDevice(std::size_t index) const {
    if (index >= Devices.size())
        throw EListError(index);
    return Devices[index];
}

void TMDeviceList::SetDevice(std::size_t index, TMDevice device) {
    GetDevice(index) = std::move(device);
}

void TMDeviceList::Add(TMDevice device) {
    Devices.push_back(std::move(device));
}

void TModbusPanel::InitQuestionStringlistStructures() {
    CycleReadList.clear();
    WriteList.clear();
    CycleReadListCount = 0;
    ReadDeviceListFromFile();
    for (const TMDevice& device : DeviceList) {
        if (!device.Enabled)
            continue;
        CycleReadList.insert(CycleReadList.end(), device.ReadList.begin(), device.ReadList.end());
        WriteList.insert(WriteList.end(), device.WriteList.begin(), device.WriteList.end());
    }
    CreateInputGrids();
}

void TModbusPanel::ReadDeviceListFromFile() {
    if (GlobalFilePath.empty())
        return;
    DeviceList.Clear();
    TMDeviceList devices; // all of them or, after a fault, none
    const TIniFile profile(Files, GlobalPlsFilePath);
    for (const std::string& name : profile.SectionNames()) {
        if (name.find("Device") == std::string::npos)
            continue;
        const TIniSection section = profile.ReadSection(name);
        if (HoldsKey(section, "Enable"))
            devices.Add(ReadDevice(profile, name, section));
    }
    DeviceList = std::move(devices);
}

TMDevice TModbusPanel::ReadDevice(const TIniFile& profile, const std::string& name,
                                  const TIniSection& section) {
    TMDevice device;
    device.Name = name;
    const auto& rows = section.Rows();
    // The first row decides, whatever its key; a section of one row leaves the device disabled.
    if (rows.size() > 1)
        device.Enabled = profile.ReadStrict(name, rows.front().Name);
    for (std::size_t position = 1; position < rows.size(); ++position) {
        const auto& row = rows[position];
        const char kind = row.Name.empty() ? '\0' : row.Name.front();
        if (kind != 'R' && kind != 'W')
            continue;
        auto& list = kind == 'R' ? device.ReadList : device.WriteList;
        list.push_back(row.Value + name + ";" + std::to_string(position - 1) + ";");
    }
    return device;
}

void TModbusPanel::CreateInputGrids() {
    const TIniFile profile = GlobalFilePath.empty() ? TIniFile("") : TIniFile(Files, GlobalPlsFilePath);
    for (TMDevice& device : DeviceList) {
        device.ReadListText.assign(device.ReadList.size(), TStringTable());
        for (std::size_t i = 0; i < device.ReadList.size(); ++i) {
            std::vector<std::string> fields;
            SplitRow(device.ReadList[i], fields, false);
            if (fields.size() > 4)
                FillGridFromRows(ListRows(profile.ReadSection(fields[4])), device.ReadListText[i]);
        }
    }
}

std::int32_t TModbusPanel::GetModbusIDFromDeviceName(std::string_view name) const {
    const auto device = std::ranges::find(DeviceList, name, &TMDevice::Name);
    if (device == DeviceList.end())
        return -1;
    if (device->ReadList.empty())
        throw EListError(0);
    return ToIntegerOr(Trim(GetRowField(device->ReadList.front(), 0)), -1);
}

void TModbusPanel::ClearCycleReadList() {
    CycleReadList.clear();
    CycleReadListCount = 0;
}

void TModbusPanel::CycleReadListAddQestion(const std::string& row) {
    CycleReadList.push_back(row);
    CycleReadListCount = 0;
}

std::string TModbusPanel::CycleReadListGetListText() const {
    std::string text;
    for (const std::string& row : CycleReadList)
        text += row + "\n";
    return text;
}

std::int32_t TModbusPanel::ModbusValueFromString(std::string_view name, std::size_t question,
                                                 std::size_t field) const {
    const auto device = std::ranges::find(DeviceList, name, &TMDevice::Name);
    if (device == DeviceList.end())
        throw EListError(DeviceList.Count());
    if (question < 1 || question > device->ResponsList.size())
        return -1;
    std::vector<std::string> fields;
    SplitRow(device->ResponsList[question - 1], fields, false);
    if (field < 1 || field > fields.size())
        return -1;
    return ToIntegerOr(Trim(fields[field - 1]), 0);
}

void TModbusPanel::WaitForWriteComplete() {
    for (int round = 0; doWrite && round < 20; ++round) {
        Wait.Sleep(100);
        Wait.ProcessMessages();
    }
}

void TModbusPanel::SetResponse(std::size_t queryIndex, const std::string& text) {
    if (DeviceList.Count() == 0)
        return;
    auto& answers = DeviceList.GetDevice(0).ResponsList;
    if (queryIndex < answers.size())
        answers[queryIndex] = text;
    else
        answers.push_back(text);
}

int TModbusPanel::GetSelectedDeviceListNumber(std::string_view name) const {
    for (std::size_t i = DeviceList.Count(); i-- > 0;)
        if (DeviceList.GetDevice(i).Name == name)
            return static_cast<int>(i);
    return -1;
}

void TModbusPanel::GetSelectedDeviceSetpointReadlist(int deviceIndex, std::vector<std::string>& list) const {
    list.clear();
    if (deviceIndex < 0)
        throw EListError(deviceIndex);
    const TMDevice& device = DeviceList.GetDevice(static_cast<std::size_t>(deviceIndex));
    for (std::size_t i = 0; i < device.ReadList.size(); ++i)
        if (GetRowField(device.ReadList[i], 1) == setpointFunction)
            list.push_back(std::to_string(i));
}

std::size_t TModbusPanel::GetProfileListCellsNameValue(std::string_view name,
                                                       std::vector<std::string>& target,
                                                       std::size_t valueColumn, std::size_t keyColumn) const {
    target.clear();
    const int index = GetSelectedDeviceListNumber(name);
    if (index < 0)
        return 0;
    const TMDevice& device = DeviceList.GetDevice(static_cast<std::size_t>(index));
    // A profile load that failed half-way leaves devices without grids.
    const std::size_t questions = std::min(device.ReadList.size(), device.ReadListText.size());
    for (std::size_t i = 0; i < questions; ++i) {
        if (GetRowField(device.ReadList[i], 1) != setpointFunction)
            continue;
        const TStringTable& grid = device.ReadListText[i];
        for (std::size_t row = 0; row < grid.RowCount(); ++row)
            target.push_back(DigitsOnly(grid.Cell(keyColumn, row)) + "=" +
                             DigitsOnly(grid.Cell(valueColumn, row)));
    }
    return target.size();
}

std::string DatalogHeader(const TModbusPanel& panel, const std::filesystem::path& currentprofilefile) {
    std::string header = ";[HeaderStart]";
    for (const TMDevice& device : panel.DeviceList)
        for (const std::string& question : device.ReadList)
            header += question;
    return header + currentprofilefile.string() + "[HeaderEnd]";
}

} // namespace tidewell

#include "setpoints/SetpointWriteRun.h"

#include "core/AtExit.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "link/NabtoDevice.h"
#include "model/ListField.h"
#include "model/ModbusPanel.h"

#include <utility>

namespace tidewell {

namespace {

constexpr TColor waitingColor{0x808080};
constexpr TColor writtenColor{0x008000};
constexpr TColor failedColor{0x0000FF};

constexpr std::int32_t noAddress = 9999;
constexpr std::int32_t statusWritten = 1;
constexpr std::int32_t firstStructnumber = 3;

std::pair<std::string_view, std::string_view> NameAndValue(std::string_view entry) {
    const std::size_t mark = entry.find('=');
    return {entry.substr(0, mark),
            mark == std::string_view::npos ? std::string_view() : entry.substr(mark + 1)};
}

// The field of a cycle's values; empty for a structnumber that stands for none.
std::string ReadValue(std::string_view structnumber, const std::vector<std::string>& values) {
    const std::int32_t number = ToIntegerOr(structnumber, 0);
    if (number < firstStructnumber)
        return {};
    const auto index = static_cast<std::size_t>(number - firstStructnumber);
    return index < values.size() ? std::string(Trim(values[index])) : std::string();
}

// Holds the updates of a list back for as long as it lives.
auto HeldUpdates(TColorList& list) {
    list.BeginUpdate();
    return TAtExit([&list] { list.EndUpdate(); });
}

} // namespace

TSetpointWriteRun::TSetpointWriteRun(const TNeeds& needs, std::string deviceName,
                                     const std::vector<std::string>& profileList,
                                     const TSelectedSetpoints& selected)
    : Needs(needs), DeviceName(std::move(deviceName)), Selected(selected) {
    for (const std::string& entry : profileList) {
        const auto [name, value] = NameAndValue(entry);
        EEadrByModbusAdr.emplace(name, value); // the first of an address counts
    }
}

void TSetpointWriteRun::Run() {
    ShowWaiting();
    bool read = false;
    {
        const auto held = HeldUpdates(Needs.ResultList);
        WriteAll();
        read = ReadBackAll();
    }
    if (read) {
        CompareAll();
    } else {
        ReadErrorCount = CurrentSetpointNumber;
        LastWriteResultList.emplace_back("Error reading device set/datapoint No compare of setpoints done");
    }
    LastWriteResultList.emplace_back("Device set/datapoint dumb of readlists");
    LastWriteResultList.insert(LastWriteResultList.end(), Snapshot.begin(), Snapshot.end());
}

bool TSetpointWriteRun::MayGoOn() const {
    return Needs.Program.IsOpen() && Needs.Action.Kept();
}

void TSetpointWriteRun::ShowWaiting() {
    const auto held = HeldUpdates(Needs.ResultList);
    for (const auto& [name, value] : Selected.ValueNamelist)
        Needs.ResultList.Add({"Name: " + name + "Value: " + value, waitingColor});
}

void TSetpointWriteRun::WriteAll() {
    for (CurrentSetpointNumber = 0; CurrentSetpointNumber < Selected.ValueAdrList.size() && MayGoOn();
         ++CurrentSetpointNumber)
        WriteOne();
}

void TSetpointWriteRun::WriteOne() {
    const auto& [fileAddress, fileValue] = Selected.ValueAdrList[CurrentSetpointNumber];
    Needs.ProgressBar.SetPosition(static_cast<int>(CurrentSetpointNumber));
    Needs.progresslabel.SetCaption("Address : " + fileAddress + " Value : " + fileValue);
    const std::int32_t value = ToIntegerOr(Trim(fileValue), 0);
    const std::int32_t address = ToIntegerOr(Trim(fileAddress), noAddress);
    std::int32_t eeAddress = address;
    std::int32_t status = 0;
    const auto found = EEadrByModbusAdr.find(std::to_string(address));
    if (address != noAddress && found != EEadrByModbusAdr.end() && !found->second.empty()) {
        eeAddress = ToIntegerOr(found->second, -1);
        if (eeAddress >= 0) {
            const std::string answer = Needs.Device.SendValue(Needs.Action, value, eeAddress, 0);
            // What a close or another device has kept from being sent is not written.
            if (!answer.empty() || MayGoOn())
                status = Needs.Device.GetResponsstatus(answer);
        }
    }
    const bool written = status == statusWritten;
    TColorList::TRow row = Needs.ResultList.Rows()[CurrentSetpointNumber];
    row.Color = written ? writtenColor : failedColor;
    row.Caption += (written ? " success Madr : " : " _Write_Error Madr : ") + fileAddress + " -> EEadr " +
                   std::to_string(eeAddress) + " Value  = " + std::to_string(value);
    if (!written) {
        row.Caption += " Responsstatus " + std::to_string(status);
        ++ErrorCount;
    }
    LastWriteResultList.push_back(row.Caption);
    Needs.ResultList.SetRow(CurrentSetpointNumber, std::move(row));
}

bool TSetpointWriteRun::ReadBackAll() {
    if (!MayGoOn())
        return false;
    Needs.progresslabel.SetCaption("Please wait reading of setpoints is in progress");
    auto result = TReadBack::EResult::NotStarted;
    RunGuarded(Needs.Dialogs, [&] { result = Needs.ReadBack.Run(); });
    Snapshot = {Needs.ReadBack.SnapshotRow(0), Needs.ReadBack.SnapshotRow(1)};
    return result == TReadBack::EResult::Done;
}

void TSetpointWriteRun::CompareAll() {
    std::vector<std::string> list;
    Needs.Panel.GetProfileListCellsNameValue(DeviceName, list, ListField::Structnumber, ListField::ModbusAdr);
    TTexts structnumbers;
    for (const std::string& entry : list)
        structnumbers.insert(NameAndValue(entry)); // the first of an address counts
    std::vector<std::string> values;
    SplitRow(Snapshot[1], values, false);
    Needs.progresslabel.SetCaption("compare written values with read values");
    LastWriteResultList.emplace_back("compare written values with read values");
    for (CurrentSetpointNumber = 0; CurrentSetpointNumber < Selected.ValueAdrList.size();
         ++CurrentSetpointNumber)
        CompareOne(structnumbers, values);
    if (ReadErrorCount == 0)
        return;
    LastWriteResultList.emplace_back("DevStrucnumlist start");
    std::string& text = LastWriteResultList.emplace_back();
    for (const std::string& entry : list)
        text.append(text.empty() ? "" : "\r\n").append(entry);
    LastWriteResultList.emplace_back("DevStrucnumlist end");
}

void TSetpointWriteRun::CompareOne(const TTexts& structnumbers, const std::vector<std::string>& values) {
    const auto& [address, fileValue] = Selected.ValueAdrList[CurrentSetpointNumber];
    const std::string madr = "Madr : " + address;
    if (LowerCase(LastWriteResultList[CurrentSetpointNumber]).find("write_error") != std::string::npos) {
        LastWriteResultList.push_back(madr + " result : Read skipped since write went wrong");
        return;
    }
    const auto found = structnumbers.find(DigitsOnly(address));
    const std::string structnumber(found == structnumbers.end() ? std::string_view() : found->second);
    if (structnumber.empty())
        LastWriteResultList.emplace_back("Didnt find structnumber");
    const std::string read = ReadValue(structnumber, values);
    const std::string written = DigitsOnly(fileValue);
    // A text without digits is no value, and nothing equals it.
    const bool same = read == written && !written.empty();
    if (!same)
        ++ReadErrorCount;
    LastWriteResultList.push_back(madr + " Structnumber : " + structnumber + " written value: " + written +
                                  " read value: " + read +
                                  (same ? " result : Write/Read success" : " result : Write/Read Error"));
}

} // namespace tidewell

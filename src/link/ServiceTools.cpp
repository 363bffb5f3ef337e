#include "link/ServiceTools.h"

#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "link/DeviceServices.h"
#include "link/DeviceUse.h"
#include "link/DownloadFiles.h"
#include "link/EepromReader.h"
#include "link/FlashDatalog.h"
#include "link/Nabto.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

constexpr std::int64_t wordSize = 2;          // bytes
constexpr std::uint32_t resetState = 15;      // of a packet without a stream
constexpr std::int32_t extendedVersions = 24; // what the device is asked to tell of itself
constexpr std::uint32_t writeTestLength = 10; // bytes
constexpr std::int32_t defaultAddress = FlashBaseAddress;

// The number times the factor, as a device is asked for it.
std::uint32_t Asked(const TEdit& edit, const TLabel& label, std::int64_t factor) {
    constexpr std::int64_t most = std::numeric_limits<std::uint32_t>::max();
    const std::int64_t number = ToInteger64(edit.Text());
    if (number < 0 || number > most / factor)
        throw ERangeError(label.Caption() + ": " + edit.Text() + " is out of range");
    return static_cast<std::uint32_t>(number * factor);
}

} // namespace

TServiceTools::TServiceTools(const TDeviceServices& services, TEepromReader& eeprom,
                             TFlashDatalog& flashDatalog, TLabel& lblJson)
    : TControls(services.Form), Services(services), Eeprom(eeprom), FlashDatalog(flashDatalog),
      LblJson(lblJson) {
    InitControls();
    butGetEepromValues.OnClick = [this] { butGetEepromValuesClick(); };
    BtnReadFlash.OnClick = [this] { BtnReadFlashClick(); };
    BtnWriteFlash.OnClick = [this] { BtnWriteFlashClick(); };
    Button1.OnClick = [this] { Button1Click(); };
    ExtendedSystemVersion.OnClick = [this] { ExtendedSystemVersionClick(); };
}

void TServiceTools::InitControls() {
    TControl* const hidden[] = {&PanelReadEEprom, &PanelReadFlash, &Button1, &ExtendedSystemVersion,
                                &BtnWriteFlash};
    for (TControl* control : hidden)
        control->SetVisible(false);
    BtnWriteFlash.SetEnabled(false);
    RErrorlogStart.SetText("0");
    RErrorlogLength.SetText("0");
    editReadAddress.SetText(std::to_string(defaultAddress));
    editReadLength.SetText("131072");
    Button1.SetHint("Resets the secondary processor of the device");
    ExtendedSystemVersion.SetHint("Asks the device for its extended version data");
    for (TEdit* edit : {&RErrorlogStart, &RErrorlogLength})
        edit->OnReturn = [this] { butGetEepromValues.Click(); };
    for (TEdit* edit : {&editReadAddress, &editReadLength})
        edit->OnReturn = [this] { BtnReadFlash.Click(); };
}

void TServiceTools::butGetEepromValuesClick() {
    const std::uint32_t length = Asked(RErrorlogLength, LabErrorlogLength, wordSize);
    if (length == 0)
        return;
    const std::uint32_t address = Asked(RErrorlogStart, LabErrorlogStart, 1);
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    const TEepromReader::TResult read = Eeprom.ReadEeprom(address, length);
    if (Services.Nabto.Ended())
        return;
    std::vector<std::string> words;
    SplitRow(read.Words, words, false);
    const bool whole = !Services.Extensions.ServiceStrict || read.Report.Whole();
    if (whole) {
        SaveEepromList(address, std::move(words), true);
        Services.Dialogs.ShowMessage("done... download");
        return;
    }
    std::string told = read.Report.Text(Services.DownloadTexts);
    try {
        if (!words.empty())
            told += "\n" + FillText(Services.DownloadTexts.SavedPart,
                                    {SaveEepromList(address, std::move(words), false)});
    } catch (const EInOutError& error) {
        told += std::string("\n") + error.what();
    }
    Services.Dialogs.ShowMessageBox(EMessageKind::Error, told, EButtons::Ok);
}

std::string TServiceTools::SaveEepromList(std::uint64_t address, std::vector<std::string> words, bool whole) {
    for (std::string& word : words) {
        word.insert(0, "EENum- " + std::to_string(address) + ";");
        address += wordSize;
    }
    const auto path = DownloadPath(Services.Clock, Services.Paths, "EElist_", Services.device, whole);
    Services.Files.CreateDirectories(path.parent_path());
    return WriteLines(*Services.Files.Create(path), words).filename().string();
}

void TServiceTools::BtnReadFlashClick() {
    const std::int32_t length = ToIntegerOr(editReadLength.Text(), 0);
    const std::int32_t address = ToIntegerOr(editReadAddress.Text(), defaultAddress);
    FlashDatalog.ReadFlash(static_cast<std::uint32_t>(address),
                           static_cast<std::uint32_t>(std::max(length, 0)));
}

void TServiceTools::BtnWriteFlashClick() {
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    TUNabto& nabto = Services.Nabto;
    const std::string reply =
        nabto.SendQuery(Services.device, "flashWrite.json", TUNabto::FormatRWData(0, writeTestLength));
    if (nabto.getResponseStatus(reply) != 0) {
        LblJson.SetCaption("Unable to change to correct Stream Mode");
        return;
    }
    LblJson.SetCaption("Status: 0");
    if (nabto.StartStream(Services.device)) {
        std::array<std::uint8_t, writeTestLength> bytes{};
        std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
        LblJson.SetCaption(nabto.WriteStream(bytes, 0) == NABTO_OK ? "Write Success" : "Stream Error");
    }
    nabto.StopStream();
}

void TServiceTools::Button1Click() {
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    Services.memoDebug.Add("ST reset send ");
    Services.Nabto.SendQuery(Services.device, "FlashWriteNostream.json",
                             TUNabto::prepareFlashWriteNostream(resetState, 0, {}));
}

void TServiceTools::ExtendedSystemVersionClick() {
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    // Only the device's own diary and the errormessage tell the answer.
    Services.Nabto.getResponseStatus(Services.Nabto.SendQuery(
        Services.device, "SystemIdentify.json", TUNabto::prepareSystemIdentify(extendedVersions)));
}

} // namespace tidewell

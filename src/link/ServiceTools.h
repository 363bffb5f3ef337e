#pragma once

#include "core/controls/Simple.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tidewell {

class TEepromReader;
class TFlashDatalog;
struct TDeviceServices;

// Tools for service work and for the development of device firmware. Their panels are shown by options of the
// command line; nothing shows BtnWriteFlash and Button1.
class TServiceTools : public TControls {
  public:
    // LblJson tells what came of BtnWriteFlash.
    TServiceTools(const TDeviceServices& services, TEepromReader& eeprom, TFlashDatalog& flashDatalog,
                  TLabel& lblJson);

    // Reads EEPROM words into a file. Throws EConvertError for a text that is no number, ERangeError for a
    // number that cannot be asked for, EInOutError when the file cannot be written.
    void butGetEepromValuesClick();
    // Reads flash and takes it for log records.
    void BtnReadFlashClick();
    // Writes ten bytes by stream, as a test of that road.
    void BtnWriteFlashClick();
    // Resets the secondary processor.
    void Button1Click();
    void ExtendedSystemVersionClick();

    TPanel PanelReadEEprom{*this, "PanelReadEEprom"};
    TButton butGetEepromValues{*this, "butGetEepromValues", "Read Eeprom list"};
    TLabel LabErrorlogStart{*this, "LabErrorlogStart", "StartAdr"};
    TEdit RErrorlogStart{*this, "RErrorlogStart"};
    TLabel LabErrorlogLength{*this, "LabErrorlogLength", "Num of Integers"};
    TEdit RErrorlogLength{*this, "RErrorlogLength"};
    TPanel PanelReadFlash{*this, "PanelReadFlash"};
    TButton BtnReadFlash{*this, "BtnReadFlash", "Read Flash"};
    TLabel LabReadAddress{*this, "LabReadAddress", "StartAdr"};
    TEdit editReadAddress{*this, "editReadAddress"};
    TLabel LabReadLength{*this, "LabReadLength", "Length (Bytes)"};
    TEdit editReadLength{*this, "editReadLength"};
    TButton Button1{*this, "Button1", "st reset"};
    TButton ExtendedSystemVersion{*this, "ExtendedSystemVersion", "system versions"};
    TButton BtnWriteFlash{*this, "BtnWriteFlash", "Write\"Flash\""};

  private:
    void InitControls();
    // The words from that address on; the file's name.
    std::string SaveEepromList(std::uint64_t address, std::vector<std::string> words, bool whole);

    const TDeviceServices& Services;
    TEepromReader& Eeprom;
    TFlashDatalog& FlashDatalog;
    TLabel& LblJson;
};

} // namespace tidewell

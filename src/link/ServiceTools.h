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
class TServiceTools {
  public:
    // LblJson tells what came of BtnWriteFlash.
    TServiceTools(const TDeviceServices& services, TEepromReader& eeprom, TFlashDatalog& flashDatalog,
                  TLabel& lblJson);
    TServiceTools(const TServiceTools&) = delete;
    TServiceTools& operator=(const TServiceTools&) = delete;

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

    TPanel PanelReadEEprom{"PanelReadEEprom"};
    TButton butGetEepromValues{"butGetEepromValues", "Read Eeprom list"};
    TLabel LabErrorlogStart{"LabErrorlogStart", "StartAdr"};
    TEdit RErrorlogStart{"RErrorlogStart"};
    TLabel LabErrorlogLength{"LabErrorlogLength", "Num of Integers"};
    TEdit RErrorlogLength{"RErrorlogLength"};
    TPanel PanelReadFlash{"PanelReadFlash"};
    TButton BtnReadFlash{"BtnReadFlash", "Read Flash"};
    TLabel LabReadAddress{"LabReadAddress", "StartAdr"};
    TEdit editReadAddress{"editReadAddress"};
    TLabel LabReadLength{"LabReadLength", "Length (Bytes)"};
    TEdit editReadLength{"editReadLength"};
    TButton Button1{"Button1", "st reset"};
    TButton ExtendedSystemVersion{"ExtendedSystemVersion", "system versions"};
    TButton BtnWriteFlash{"BtnWriteFlash", "Write\"Flash\""};

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

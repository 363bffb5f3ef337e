#pragma once

#include "core/controls/MaskEdit.h"
#include "core/controls/Simple.h"
#include "core/controls/TrackBar2.h"
#include "link/FlashBlocks.h"
#include "link/FlashRecords.h"
#include "link/ReadReport.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell {

class TEepromReader;
struct TDeviceServices;

// Downloads a range of the log that the device keeps in its flash, saves it as a datalog and offers to show
// it. The range is set on a slider, in blocks back from now.
class TFlashDatalog : public TControls {
  public:
    TFlashDatalog(const TDeviceServices& services, TEepromReader& eeprom);

    void TakeTexts(const TIniFile& language);

    void ButFlashDatalogClick();
    // The slider's range, in up to three reads of which the last one saves.
    void DownloadFlashLog();
    // One read that saves, of any part of the flash. Nothing happens for length 0.
    void ReadFlash(std::uint32_t address, std::uint32_t length);

    // Before the device form closes: whether it may. Asks while a read runs; Yes ends the read.
    bool MayClose();
    bool Stopped() const; // by the user, or because the program was closed

    TEvent<> OnStopRunningLog; // before the flash is read
    // The user wants to see the file, by that companion profile.
    TEvent<const std::filesystem::path&, const std::filesystem::path&> OnShowFlashDatalog;

    TFlashBlocks FlashBlocks; // of the last download
    std::int32_t CurrentLogBlock = 0;
    std::filesystem::path PathLastSavedFDFile;
    std::string QuestionDatalog;
    struct {
        std::string adjustdays, adjustdaysheader, errorlogcounter;
    } MischStrings;

    TButton ButFlashDatalog{*this, "ButFlashDatalog", "Flash Datalog"};
    TPanel PanelFDDatalog{*this, "PanelFDDatalog"};
    TTrackBar2 DayTracker{*this, "DayTracker", 0, FlashBlockCount};
    TMaskEdit DT_MaskeditStartDate;
    TMaskEdit DT_MaskeditEndDate;
    TLabel DT_LabelToday{*this, "DT_LabelToday"};
    TLabel DT_LabelEndDay{*this, "DT_LabelEndDay"};
    TLabel DT_LabelFrom{*this, "DT_LabelFrom", "Datum von :"};
    TLabel DT_LabelTo{*this, "DT_LabelTo", "Datum bis :"};
    TButton DT_GetData{*this, "DT_GetData"};
    TLabel DT_LabelNotice{
        *this, "DT_LabelNotice"}; // why nothing is downloaded; hidden while there is nothing to say

  private:
    void ReadCounters();
    void DayTrackerChange();
    void EditClick(TMaskEdit& edit);
    void EditExit(TMaskEdit& edit);
    void Notice(const std::string& text); // empty: none
    // What stands in the way of a download; empty when nothing does.
    std::string Obstacle() const;
    // first begins the rows anew; last saves them.
    void ReadFlashDatalog(std::uint32_t address, TReadPart part, bool first, bool last);
    void ReadSegment(std::uint32_t address, TReadPart& part, std::size_t firstNumber, bool last);
    TStreamRead ReadStream(std::uint32_t length);
    // Saves what came, and tells what did not.
    void Conclude();
    void Release(); // what a download leaves
    bool SaveDatalist(bool whole);
    void OfferFlashView(const std::string& question);

    const TDeviceServices& Services;
    TEepromReader& Eeprom;
    TFlashRecords SL_Datalist; // the rows gathered so far
    TReadReport Report;        // of the segments they come from
    std::string CountersOf;    // device that CurrentLogBlock was read from
    bool Reading = false;
    bool StopRequested = false;
};

} // namespace tidewell

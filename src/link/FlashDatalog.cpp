#include "link/FlashDatalog.h"

#include "core/AtExit.h"
#include "core/ChosenFile.h"
#include "core/Errors.h"
#include "core/Extensions.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/controls/Lists.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IDialogs.h"
#include "link/DeviceServices.h"
#include "link/DeviceUse.h"
#include "link/DownloadFiles.h"
#include "link/EepromReader.h"
#include "link/Nabto.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

constexpr std::string_view editMask = "!\\T\\:999\\S\\:99\\M\\:99;1;_";
constexpr std::int32_t minutesPerDay = 24 * 60;
constexpr std::int32_t longestDays = 146; // that the ring holds
constexpr std::uint32_t counterBytes = 4;
constexpr std::size_t progressPanel = 2;

// How long ago the position is: "T:146S:20M:16".
std::string TextOfPosition(std::int32_t position) {
    const std::int32_t minutes = position * FlashMinutesPerBlock;
    return "T:" + PaddedText(minutes / minutesPerDay, 3) +
           "S:" + PaddedText(minutes % minutesPerDay / 60, 2) + "M:" + PaddedText(minutes % 60, 2);
}

std::int32_t PositionOfText(const std::string& text) {
    const auto number = [&text](std::size_t at, std::size_t length) {
        return ToIntegerOr(Trim(std::string_view(text).substr(std::min(at, text.size()), length)), 0);
    };
    const std::int32_t minutes = number(2, 3) * minutesPerDay + number(7, 2) * 60 + number(11, 2);
    return minutes / FlashMinutesPerBlock;
}

} // namespace

TFlashDatalog::TFlashDatalog(const TDeviceServices& services, TEepromReader& eeprom)
    : TControls(services.Form), DT_MaskeditStartDate(*this, "DT_MaskeditStartDate", editMask),
      DT_MaskeditEndDate(*this, "DT_MaskeditEndDate", editMask), Services(services), Eeprom(eeprom) {
    ButFlashDatalog.SetVisible(false);
    PanelFDDatalog.SetVisible(false);
    DT_LabelNotice.SetVisible(false);
    DayTracker.SetFrequency(10 * minutesPerDay / FlashMinutesPerBlock);
    DayTracker.SetPageSize(minutesPerDay / FlashMinutesPerBlock);
    const std::string hint = "Days, hours and minutes back from now; click to enter days";
    for (TMaskEdit* edit : {&DT_MaskeditStartDate, &DT_MaskeditEndDate}) {
        edit->SetHint(hint);
        edit->OnClick = [this, edit] { EditClick(*edit); };
        edit->OnExit = [this, edit] { EditExit(*edit); };
    }
    DayTracker.OnChange = [this] { DayTrackerChange(); };
    ButFlashDatalog.OnClick = [this] { ButFlashDatalogClick(); };
    DT_GetData.OnClick = [this] { DownloadFlashLog(); };
    DayTrackerChange();
}

void TFlashDatalog::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "Nabtodriver",
              {{ButFlashDatalog, "ButFlashdatalog"},
               {DT_GetData, "ButGetFlashData"},
               {DT_LabelToday, "labbegin"},
               {DT_LabelEndDay, "labfinish"},
               {DT_LabelFrom, "labfrom"},
               {DT_LabelTo, "labto"},
               {QuestionDatalog, "questiondatalog"},
               {MischStrings.adjustdays, "adjustdays"},
               {MischStrings.adjustdaysheader, "adjustdaysheader"},
               {MischStrings.errorlogcounter, "errorlogcounter"}});
}

void TFlashDatalog::ButFlashDatalogClick() {
    if (PanelFDDatalog.Visible()) {
        PanelFDDatalog.SetVisible(false);
        return;
    }
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    PanelFDDatalog.SetVisible(true);
    Notice({});
    ReadCounters();
}

void TFlashDatalog::ReadCounters() {
    const std::int32_t address = Services.Profile.FlashPage.DF_FDCountNum;
    if (address == 0) {
        Services.Dialogs.ShowMessage(MischStrings.errorlogcounter);
        PanelFDDatalog.SetVisible(false);
        return;
    }
    CountersOf.clear();
    const auto read = Eeprom.ReadEeprom(static_cast<std::uint32_t>(address), counterBytes);
    if (Services.Extensions.ServiceStrict && !read.Report.Whole()) {
        Notice(Obstacle());
        return;
    }
    if (read.Words.empty())
        return;
    CountersOf = Services.device;
    const std::string current = GetRowField(read.Words, 0);
    const std::string used = GetRowField(read.Words, 1);
    Services.memoDebug.Add("FLASHDATALOG_COUNT1 " + current);
    Services.memoDebug.Add("FLASHDATALOG_COUNT2 " + used);
    CurrentLogBlock = ToIntegerOr(current, 0);
    DayTracker.SetUpperPosition(ToIntegerOr(used, 0));
}

void TFlashDatalog::DayTrackerChange() {
    DT_MaskeditStartDate.SetText(TextOfPosition(DayTracker.LowerPosition()));
    DT_MaskeditEndDate.SetText(TextOfPosition(DayTracker.UpperPosition()));
    Notice({});
}

void TFlashDatalog::Notice(const std::string& text) {
    DT_LabelNotice.SetCaption(text);
    DT_LabelNotice.SetVisible(!text.empty());
}

std::string TFlashDatalog::Obstacle() const {
    if (Services.Extensions.ServiceStrict && CountersOf != Services.device)
        return Services.DownloadTexts.NoCounters;
    return {};
}

void TFlashDatalog::EditClick(TMaskEdit& edit) {
    const auto answer =
        Services.Dialogs.InputBox(MischStrings.adjustdaysheader, MischStrings.adjustdays, "0");
    if (!answer || answer->empty())
        return;
    const std::int32_t days = std::clamp(ToIntegerOr(DigitsOnly(*answer), 0), 0, longestDays);
    edit.SetText("T:" + std::to_string(days) + "S:00" + "M:00");
    DT_GetData.SetFocus();
    EditExit(edit);
}

void TFlashDatalog::EditExit(TMaskEdit& edit) {
    const std::int32_t position = PositionOfText(edit.Text());
    if (&edit == &DT_MaskeditStartDate)
        DayTracker.SetLowerPosition(position);
    else
        DayTracker.SetUpperPosition(position);
    DayTrackerChange(); // the time that is in force, in whole blocks
}

void TFlashDatalog::DownloadFlashLog() {
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    Notice(Obstacle());
    if (DT_LabelNotice.Visible())
        return;
    OnStopRunningLog();
    FlashBlocks = CalcFlashBlocks(DayTracker.LowerPosition(), DayTracker.UpperPosition(), CurrentLogBlock);
    ReportFlashBlocks(FlashBlocks, DT_MaskeditStartDate.Text(), DT_MaskeditEndDate.Text(),
                      Services.memoDebug);
    if (FlashBlocks.Empty())
        Notice(Services.DownloadTexts.EmptyRange);
    const auto& qlist = FlashBlocks.qlist;
    const auto read = [this, &qlist](std::size_t run, bool first, bool last) {
        const std::int32_t address = ToIntegerOr(qlist[2 * run], FlashBaseAddress);
        const std::int32_t length = ToIntegerOr(qlist[2 * run + 1], FlashBlockSize);
        const TReadPart part{.First = static_cast<std::uint32_t>(FlashBlocks.BlockNumberStart[run]),
                             .Unit = FlashBlockSize,
                             .Wanted = static_cast<std::uint32_t>(std::max(length, 0))};
        if (!Stopped())
            ReadFlashDatalog(static_cast<std::uint32_t>(address), part, first, last);
    };
    const TAtExit release([this] { Release(); });
    read(0, true, qlist[3] == "0");
    read(1, false, qlist[5] == "0");
    if (qlist[5] != "0")
        read(2, false, true);
    Conclude();
}

void TFlashDatalog::Release() {
    SL_Datalist.Clear();
    StopRequested = false;
}

void TFlashDatalog::ReadFlash(std::uint32_t address, std::uint32_t length) {
    if (length == 0)
        return;
    const TDeviceUse::THold hold(Services.Use);
    if (!hold)
        return;
    OnStopRunningLog();
    const TAtExit release([this] { Release(); });
    ReadFlashDatalog(address, {.First = address, .Wanted = length}, true, true);
    Conclude();
}

void TFlashDatalog::ReadFlashDatalog(std::uint32_t address, TReadPart part, bool first, bool last) {
    if (first) {
        SL_Datalist.Clear();
        Report.Clear();
    }
    if (part.Wanted == 0)
        return;
    // A later segment begins with the number of the last row once more.
    ReadSegment(address, part, first ? 1 : SL_Datalist.Count(), last);
    Report.Add(std::move(part));
}

void TFlashDatalog::ReadSegment(std::uint32_t address, TReadPart& part, std::size_t firstNumber, bool last) {
    TUNabto& nabto = Services.Nabto;
    TMemo& memo = Services.memoDebug;
    memo.Add("Preparing Stream...");
    const std::string reply =
        nabto.SendQuery(Services.device, "flashRead.json", TUNabto::FormatRWData(address, part.Wanted));
    const std::int32_t status = nabto.getResponseStatus(reply);
    part.Reason = RefusalReason(reply, status, Services.DownloadTexts);
    if (Stopped())
        return;
    if (status != 0) {
        memo.Add("Stream preperation error: " + std::to_string(status));
        return;
    }
    memo.Add("Preperation Success");
    memo.Add("Starting Stream...");
    const TAtExit close([&nabto] { nabto.StopStream(); });
    if (!nabto.StartStream(Services.device)) {
        part.Reason = Services.DownloadTexts.NoStream;
        return;
    }
    memo.Add("Stream Started");
    memo.Add("Reading Stream...");
    TStreamRead read = ReadStream(part.Wanted);
    part.Take(read, Services.DownloadTexts);
    Services.StatusBar.SetText(progressPanel, {});
    memo.Add("Done Reading");
    if (Stopped())
        return;
    if (Services.Extensions.ServiceStrict) {
        SL_Datalist.Add(std::move(read.Bytes), firstNumber);
        return;
    }
    auto bytes = std::move(read).AtLength(part.Wanted);
    if (!bytes)
        return;
    SL_Datalist.Add(*std::move(bytes), firstNumber);
    if (last && SaveDatalist(true))
        OfferFlashView(QuestionDatalog);
}

TStreamRead TFlashDatalog::ReadStream(std::uint32_t length) {
    Reading = true;
    const TAtExit done([this] { Reading = false; });
    return Services.Nabto.ReadStream(length);
}

// Without the key the last segment saves, while its stream is open, and only if it came.
void TFlashDatalog::Conclude() {
    if (!Services.Extensions.ServiceStrict || Stopped() || Report.Empty())
        return;
    const TDownloadTexts& texts = Services.DownloadTexts;
    const bool whole = Report.Whole();
    std::string told;
    if (!whole) {
        for (const std::string& line : Report.Lines(texts)) {
            Services.memoDebug.Add(line);
            Services.MemoEventLog.Add(ButFlashDatalog.Caption() + ": " + line);
        }
        told = Report.Text(texts) + "\n";
    }
    const auto show = [this](const std::string& text) {
        Services.Dialogs.ShowMessageBox(EMessageKind::Error, text, EButtons::Ok);
    };
    if (Report.Came() == 0)
        return show(Report.Text(texts));
    if (SL_Datalist.Count() == 0)
        return show(told + texts.NoRecords);
    if (!SaveDatalist(whole))
        return show(told + texts.NotSaved);
    const std::string name = PathLastSavedFDFile.filename().string();
    OfferFlashView(whole ? QuestionDatalog
                         : told + FillText(texts.SavedPart, {name}) + "\n" + texts.ShowPart);
}

// What was read over a slow link must not be lost to a full disk: the user is asked for another place.
bool TFlashDatalog::SaveDatalist(bool whole) {
    const std::string header = DatalogHeader(Services.Panel, Services.Profile.currentprofilefile);
    const auto directory = GetFlashLogLogpath(Services.Paths);
    const auto path = DownloadPath(Services.Clock, Services.Paths, "FDlog_", Services.device, whole);
    const auto write = [this, &header](const std::filesystem::path& file, EName name) {
        Services.Files.CreateDirectories(file.parent_path());
        return SL_Datalist.Save(*OpenWriter(Services.Files, file, name), header);
    };
    const auto choose = [this, &directory] {
        TFileDialog dialog;
        dialog.Title = ButFlashDatalog.Caption();
        dialog.InitialDirectory = directory;
        dialog.Filters = {{"csv", "*.csv"}};
        auto chosen = Services.Dialogs.SaveFile(dialog);
        if (chosen && !chosen->has_extension())
            chosen = UnusedPath(Services.Files, *chosen += ".csv");
        return chosen;
    };
    const auto saved = SaveOrElsewhere(Services.Dialogs, path, EName::Made, write, choose);
    PathLastSavedFDFile = saved.value_or(path);
    return saved.has_value();
}

void TFlashDatalog::OfferFlashView(const std::string& question) {
    const TAtExit hide([this] { PanelFDDatalog.SetVisible(false); });
    const bool show = Services.Dialogs.ShowMessageBox(EMessageKind::Confirmation, question,
                                                      EButtons::YesNo) == EModalResult::Yes;
    const auto profile = Services.Profile.GetFlashLogProfilepath();
    if (show && Services.Program.IsOpen() && !profile.empty())
        OnShowFlashDatalog(profile, PathLastSavedFDFile);
}

bool TFlashDatalog::MayClose() {
    if (!Reading || !Services.Program.IsOpen())
        return true;
    const auto answer = Services.Dialogs.ShowMessageBox(
        EMessageKind::Confirmation, "The flash is still being read. Stop reading?", EButtons::YesNo);
    if (answer == EModalResult::Yes)
        StopRequested = Reading;
    return answer == EModalResult::Yes;
}

bool TFlashDatalog::Stopped() const {
    return StopRequested || !Services.Program.IsOpen();
}

} // namespace tidewell

#include "logging/LiveLog.h"

#include "core/ChosenFile.h"
#include "core/Errors.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/ProgramState.h"
#include "core/controls/StatusBar.h"
#include "logging/DatalogWriter.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tidewell {

namespace fs = std::filesystem;

namespace {

constexpr TColor RunningColor{32768};
constexpr TColor StoppedColor{0x808080};
constexpr std::size_t HeadFields = 3; // number, date and time

} // namespace

void TUpdateTimerCallBackEvents::ClearStrings() {
    for (std::string* text : {&str_ModbusSeriel, &str_ModbusEthernet, &str_RS232string1, &str_RS232string2,
                              &str_RS232string3, &str_RS232string4, &str_RS232string5})
        text->clear();
}

std::array<std::string_view, 7> TUpdateTimerCallBackEvents::Strings() const {
    return {str_ModbusSeriel, str_ModbusEthernet, str_RS232string1, str_RS232string2,
            str_RS232string3, str_RS232string4,   str_RS232string5};
}

TLiveLog::TLiveLog(TForm& form, const TNeeds& needs)
    : TControls(form), UpdateTimer(needs.Timers.CreateTimer()), TimerLogAutostart(needs.Timers.CreateTimer()),
      Needs(needs), Journal(needs.Files, needs.Clock) {
    UpdateTimer->SetInterval(1000);
    UpdateTimer->SetHandler([this] { UpdateTimerTimer(); });
    Needs.TrafficButton.SetColor(StoppedColor);
    TimerLogAutostart->SetInterval(5000);
    TimerLogAutostart->SetHandler([this] { TimerLogAutostartTimer(); });
    Needs.Buffers.OnClear = [this] {
        KeepRows();
        Journal.Leave();
        JournalStopped = false;
    };
}

void TLiveLog::TakeTexts(const TIniFile& language) {
    Texts.Read(language);
    ReadTexts(language, "HeadAppl",
              {{MessageLoggingStart, "MessageLoggingStart"},
               {MessageLoggingStop, "MessageLoggingStop"},
               {MessageClearGraphData, "MessageClearGraphData"},
               {TrafficButtonON, "TrafficButtonON"},
               {TrafficButtonOFF, "TrafficButtonOFF"},
               {DialogSaveDatalogFile, "DialogSaveDatalogFile"}});
}

void TLiveLog::SetCycleResult(const std::string& nabtoResultstring) {
    UpdateTimerCallBackEvents.str_ModbusEthernet = nabtoResultstring;
}

std::string TLiveLog::CurrentDataString() const {
    std::string data;
    for (const std::string_view text : UpdateTimerCallBackEvents.Strings())
        data += text;
    return data;
}

void TLiveLog::CycleWithoutValues() {
    if (std::exchange(NoValuesTold, true))
        return;
    Needs.MemoEventLog.Add(Texts.NoValues);
    NoticeNoValues.Show(Texts.NoValues);
}

void TLiveLog::ForgetNoValues() {
    NoValuesTold = false;
    NoticeNoValues.Clear();
}

void TLiveLog::UpdateTimerTimer() {
    ForgetNoValues();
    const auto strings = UpdateTimerCallBackEvents.Strings();
    std::exception_ptr failure;
    if (!std::all_of(strings.begin(), strings.end(), [](std::string_view text) { return text.empty(); }))
        failure = LogRow(strings);
    ++Needs.Buffers.DatalogCount;
    WriteJournal();
    if (failure)
        std::rethrow_exception(failure);
}

std::exception_ptr TLiveLog::LogRow(const std::array<std::string_view, 7>& strings) {
    TGraphPage& page = Needs.GraphPage;
    const std::size_t row = Needs.Buffers.DatalogCount;
    const TTime now = Needs.Clock.Now();
    const std::string time = Needs.Clock.LongTime(now);
    const std::string date = Needs.Clock.ShortDate(now);
    page.DropSamplesFrom(page.FileRows + row); // what a step that failed has left
    page.GraphDataLabelsTimeText.Add(time);
    page.GraphDataLabelsDateText.Add(date);

    Line = std::to_string(row) + ';' + date + ';' + time + ';';
    for (const std::string_view text : strings)
        Line += text;
    const auto fields = SplitStrictly(Line);
    Values.clear();
    for (std::size_t field = HeadFields; field < fields.size(); ++field)
        Values.push_back(ToIntegerOr(fields[field], 0));
    Needs.Buffers.DataLogRawData.SetRow(row, Values);

    std::exception_ptr failure;
    const auto show = [&failure](const auto& action) {
        try {
            action();
        } catch (const std::exception&) {
            if (!failure)
                failure = std::current_exception();
        }
    };
    show([&] { page.ExtendGraph(Line); });
    show([&] { OnDataLine(Line); });

    const std::int64_t every = UpdateTimerCallBackEvents.DatalogCount;
    if (every == 0)
        throw TError("Division by zero: " + Needs.Paths.Systemfile.string() +
                     ": [UpdateTimer] DatalogCount is 0");
    if (row != 0 && static_cast<std::int64_t>(row) % every == 0)
        SavePartialFile();
    return failure;
}

void TLiveLog::PollingFailed(const std::string& reason) {
    StopLog();
    Tell(Texts.LogStopped + ": " + reason);
}

void TLiveLog::Tell(const std::string& line) {
    Needs.MemoEventLog.Add(line);
    LogNotice.Show(line);
}

void TLiveLog::StartLog(bool questionEnable, bool clearData) {
    if (Needs.Opening.Taken())
        return;                           // the rows that it would clear or go on are being read
    TimerLogAutostart->SetEnabled(false); // this start is the one
    if (!Needs.Polling.Link())
        return;
    if (!Needs.Profile.MayLog()) {
        Needs.Dialogs.ShowMessageBox(EMessageKind::Information, "Profile NOT loaded...", EButtons::Ok);
        OnNoProfile();
        return;
    }
    bool keep = false;
    if (questionEnable) {
        const auto answer =
            Needs.Dialogs.ShowMessageBox(EMessageKind::Confirmation, MessageClearGraphData, EButtons::YesNo);
        // A log that cannot be saved goes on, so that its rows are not lost.
        keep = answer != EModalResult::Yes || !RunGuarded(Needs.Dialogs, [this] { SavePartialFile(); });
    }
    if (!Needs.Program.IsOpen())
        return; // closed while it was asked
    LogNotice.Clear();
    if (questionEnable ? !keep : clearData) {
        Needs.GraphPage.ClearGraphPage();
        Needs.GraphPage.GraphInit(false);
        Needs.Buffers.DatalogCount = 0;
    }
    if (Needs.Buffers.DatalogCount == 0)
        Needs.Buffers.Header = CreateDatalogHeader();
    Needs.StatusBar.Repaint();
    ForgetNoValues();
    Needs.Polling.Start();
    Needs.TrafficButton.SetColor(RunningColor);
    Needs.TrafficButton.SetCaption(TrafficButtonON);
    if (clearData) {
        ReportTraffic(MessageLoggingStart);
        DatalogOn = true;
        Needs.GraphPage.CurrentLogStartDate = Needs.Clock.ShortDate(Needs.Clock.Now());
    }
    if (!Needs.Polling.Running())
        Tell(Texts.NoSession);
}

void TLiveLog::StopLog() {
    if (DatalogOn)
        LogNotice.Clear(); // it was about the log that ends here
    Needs.Panel.WannaClose = true;
    Needs.TrafficButton.SetColor(StoppedColor);
    Needs.TrafficButton.SetCaption(TrafficButtonOFF);
    Needs.Polling.Stop();
    ForgetNoValues();
    ReportTraffic(MessageLoggingStop);
    DatalogOn = false;
    UpdateTimer->SetEnabled(false);
}

void TLiveLog::TrafficButtonClick() {
    TSLCursor& cursor = Needs.GraphPage.graph.Cursors[0];
    if (DatalogOn) {
        StopLog();
        cursor.SetVisible(true);
    } else {
        StartLog(true, true);
        Needs.StatusBar.Repaint();
        cursor.SetVisible(false);
    }
}

void TLiveLog::TimerLogAutostartTimer() {
    if (Needs.Opening.Taken())
        return; // comes again with the next tick
    TimerLogAutostart->SetEnabled(false);
    const bool fileOpen = Needs.GraphPage.DatalogFileOpen || Needs.GraphPage.FileRows > 0;
    if (Needs.Extensions.LogAutoStartSpareOpenFile && fileOpen) {
        Needs.MemoEventLog.Add(Texts.AutoStartSpared);
        return;
    }
    StartLog(false, true);
}

fs::path TLiveLog::SaveDataLogFile(const fs::path& wanted) {
    const fs::path directory = wanted.parent_path();
    if (!Needs.Files.DirectoryExists(directory) && Needs.Files.DirectoryExists(directory.parent_path()))
        Needs.Files.CreateDirectories(directory);
    return WriteRows(*Needs.Files.Create(wanted), CreateDatalogHeader());
}

fs::path TLiveLog::WriteRows(IFileWriter& file, std::string_view header) {
    fs::path place = WriteDatalog(file, Rows(), header);
    Needs.Buffers.SavedRows = Needs.Buffers.DatalogCount;
    Journal.Drop();
    return place;
}

void TLiveLog::WriteJournal() {
    if (!Needs.Extensions.JournalEnabled || JournalStopped)
        return;
    try {
        Journal.Add(Needs.Paths.directorypath / "log" / "journal", Rows(), Needs.Buffers.SavedRows,
                    Needs.Buffers.Header, JournalSyncTime);
    } catch (const EInOutError& error) { // the log itself goes on
        JournalStopped = true;
        Tell(FillText(Texts.JournalFailed, {error.what()}));
    }
}

void TLiveLog::RecoverJournals() {
    for (const fs::path& journal : JournalsLeft(Needs.Files, Needs.Paths.directorypath / "log" / "journal"))
        try {
            const auto log = RecoverJournal(Needs.Files, journal, Needs.Paths.directorypath / "log" / "kept");
            if (!log)
                continue;
            const std::string line =
                FillText(Texts.Recovered, {std::to_string(log->Rows), log->Path.string()});
            Needs.MemoEventLog.Add(line);
            NoticeRecovered.Show(line);
            NoticeRecovered.OfferAction(Texts.OpenRecovered, [this, found = *log] {
                NoticeRecovered.Clear();
                OnOpenRecovered(found);
            });
        } catch (const EInOutError& error) {
            Tell(FillText(Texts.NotRecovered, {journal.string(), error.what()}));
        }
}

std::size_t TLiveLog::UnsavedRows() const {
    return Needs.Buffers.DatalogCount - Needs.Buffers.SavedRows;
}

std::optional<fs::path> TLiveLog::KeepRows() {
    if (UnsavedRows() == 0)
        return std::nullopt;
    const std::string rows = std::to_string(UnsavedRows());
    std::vector<fs::path> folders{Needs.Paths.directorypath / "log" / "kept"};
    folders.insert(folders.end(), Needs.SpareFolders.begin(), Needs.SpareFolders.end());
    std::string failure;
    for (const fs::path& folder : folders)
        try {
            Needs.Files.CreateDirectories(folder);
            const auto file = Needs.Files.Create(folder / ("datalog" + NowStamp(Needs.Clock) + ".csv"));
            const fs::path path = WriteRows(*file, Needs.Buffers.Header);
            Needs.MemoEventLog.Add(FillText(Texts.Kept, {rows, path.string()}) +
                                   (failure.empty() ? "" : ": " + failure));
            return path;
        } catch (const std::exception& error) {
            failure += (failure.empty() ? "" : "; ") + std::string(error.what());
        }
    Tell(FillText(Texts.NotKept, {rows, failure}));
    return std::nullopt;
}

std::string TLiveLog::CreateDatalogHeader() const {
    return DatalogHeader(Needs.Panel, Needs.Profile.currentprofilefile);
}

void TLiveLog::SaveUserDatalog1Click() {
    StopLog();
    TFileDialog dialog;
    dialog.Title = DialogSaveDatalogFile;
    dialog.InitialDirectory = UserLogDirectory();
    dialog.Filters = {{"csv", "*.csv"}};
    const auto path = ChooseCsvFile(Needs.Files, Needs.Dialogs, dialog);
    if (!path)
        return;
    WriteRows(*Needs.Files.Replace(*path), CreateDatalogHeader());
    Needs.MemoEventLog.Add("StringDatalog saved and cleared");
}

void TLiveLog::SavePartialFile() {
    const fs::path wanted = UserLogDirectory() / ("datalog" + NowStamp(Needs.Clock) + "partial.csv");
    const std::size_t generation = Needs.Buffers.Generation;
    const bool same = wanted == LastPartial.Wanted && generation == LastPartial.Generation;
    const fs::path path = same ? WriteRows(*Needs.Files.Replace(LastPartial.Written), CreateDatalogHeader())
                               : SaveDataLogFile(wanted);
    LastPartial = {wanted, path, generation};
}

fs::path TLiveLog::UserLogDirectory() const {
    return Needs.Paths.directorypath / "log" / "userlog";
}

TDatalogRows TLiveLog::Rows() const {
    return {Needs.Buffers.DatalogCount, Needs.GraphPage.GraphDataLabelsDateText,
            Needs.GraphPage.GraphDataLabelsTimeText, Needs.Buffers.DataLogRawData, Needs.GraphPage.FileRows};
}

void TLiveLog::ReportTraffic(const std::string& message) {
    const TTime now = Needs.Clock.Now();
    const auto [hour, minute] = Needs.Clock.HourMinute(now);
    std::array<char, 32> time{};
    std::snprintf(time.data(), time.size(), "%.2d:%.2d", hour, minute);
    Needs.MemoEventLog.Add(message + ' ' + time.data() + ' ' + Needs.Clock.ShortDate(now));
}

} // namespace tidewell

#include "errorlog/ErrorLog.h"

#include "core/Configuration.h"
#include "core/Errors.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/ProgramState.h"
#include "core/TextFile.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"

#include <vector>

namespace tidewell {

namespace {

constexpr unsigned minutesPerTick = 5;
constexpr unsigned firstYear = 2000;

const std::string& At(const std::vector<std::string>& words, std::size_t index) {
    if (index >= words.size())
        throw EListError(index);
    return words[index];
}

std::uint16_t Word(const std::string& text) {
    return static_cast<std::uint16_t>(ToIntegerOr(text, 0));
}

} // namespace

std::string ErrorEventText(std::uint16_t MoDy, std::uint16_t MinErr) {
    const unsigned month = MoDy >> 12U;
    const unsigned day = MoDy >> 7U & 0x1FU;
    const unsigned year = (MoDy & 0x7FU) + firstYear;
    const unsigned minutes = (MinErr >> 7U) * minutesPerTick; // the hour may be above 23
    const unsigned number = MinErr >> 1U & 0x3FU;
    const bool came = (MinErr & 1U) != 0;
    return "Time " + PaddedText(minutes / 60, 2) + ":" + PaddedText(minutes % 60, 2) + " Date " +
           PaddedText(day, 2) + "/" + PaddedText(month, 2) + " " + PaddedText(year, 4) + " Errornumber " +
           PaddedText(number, 2) + (came ? " ON" : " OFF");
}

TErrorLog::TErrorLog(TForm& form, const TNeeds& needs) : TControls(form), Needs(needs) {
    TabErrorlog.SetVisible(false);
    Needs.TheTab.Pages.emplace_back(TabErrorlog);
}

void TErrorLog::EvalErrorlog(const std::string& wordList, const std::string& remark) {
    ErrorLogActive = false;
    ErrorLogActiveCount = 0;
    Needs.Log.StopLog();
    Memo.Clear();
    TabErrorlog.SetVisible(true);
    Needs.TheTab.SetActivePage(TabErrorlog);

    const TTime now = Needs.Clock.Now();
    Memo.Add(Needs.Clock.ShortDate(now) + " " + Needs.Clock.LongTime(now));
    if (!wordList.empty())
        AddEvents(wordList);
    if (!remark.empty())
        Memo.Add(remark);
    const auto path =
        Needs.Paths.directorypath / "log" / "userlog" / ("errorlog " + DateTimeStamp(Needs.Clock) + ".csv");
    Needs.Files.CreateDirectories(path.parent_path());
    WriteLines(*Needs.Files.Create(path), Memo.Lines());
    Memo.Add("File saved in userlog directory");
    Memo.TopRequested.Emit(); // the date of the read, and the events of late
    Needs.Panel.InitQuestionStringlistStructures();
}

void TErrorLog::AddEvents(const std::string& wordList) {
    std::vector<std::string> words;
    SplitRow(wordList, words, false);
    // The index of the last event; with an odd number of words its MinErr is one behind the end.
    const std::size_t last = words.empty() ? 0 : (words.size() - 1) / 2;
    for (std::size_t event = 0; event <= last; ++event) {
        const std::string& MoDy = At(words, event);
        const std::string& MinErr = At(words, event + last + 1);
        if (Needs.Settings.doIncludeValuesInFile)
            Memo.Add("DataValues for calculation -> MoDy " + MoDy + " MinErr " + MinErr);
        Memo.Add("Number" + std::to_string(event + 1) + " " + ErrorEventText(Word(MoDy), Word(MinErr)));
    }
}

void TErrorLog::Errorlog1Click() {
    if (!Needs.Profile.ProfileLoaded)
        return;
    Needs.Log.StopLog();
    Needs.Panel.ClearCycleReadList();
    if (Needs.Panel.DeviceList.Count() > 0)
        Needs.Panel.DeviceList.GetDevice(0).ReadList.clear();
    std::size_t number = Needs.Panel.CycleReadListGetNumbersInList();
    for (const auto& question : Needs.Settings.Qestion.Rows())
        Needs.Panel.CycleReadListAddQestion(question.Value + ";" + std::to_string(number++));
    Needs.Log.StartLog(true, true);
    ErrorLogActive = true;
    ErrorLogActiveCount = 0;
}

} // namespace tidewell

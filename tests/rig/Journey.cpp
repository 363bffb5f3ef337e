#include "rig/Journey.h"

#include "core/AtExit.h"
#include "core/DiskFiles.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "core/controls/Lists.h"
#include "core/controls/MaskEdit.h"
#include "core/controls/Menu.h"
#include "core/controls/Pages.h"
#include "core/controls/ScrollBar.h"
#include "core/controls/StringGrid.h"
#include "core/controls/TrackBar2.h"
#include "core/controls/TreeView.h"
#include "rig/Wire.h"
#include "sim/controller/Firmware.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

namespace tidewell::test {

namespace {

const std::vector<std::string> linked{"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

// The first word, and what stands behind it.
std::pair<std::string, std::string> Split(const std::string& text) {
    const auto blank = text.find(' ');
    return blank == std::string::npos ? std::pair{text, std::string()}
                                      : std::pair{text.substr(0, blank), text.substr(blank + 1)};
}

std::vector<std::string> Words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// "\n" and the like as the person wrote them.
std::string Unescaped(std::string text) {
    for (const auto& [shown, raw] : {std::pair{"\\n", "\n"}, {"\\r", "\r"}, {"\\t", "\t"}})
        for (std::size_t at = 0; (at = text.find(shown, at)) != std::string::npos;)
            text.replace(at, 2, raw);
    return text;
}

// "200ms", "5s", "10min", "2h" in ms; nothing for another text.
std::optional<int> Duration(const std::string& text) {
    const auto end = text.find_first_not_of("0123456789");
    for (const auto& [unit, ms] : {std::pair{"ms", 1}, {"s", 1000}, {"min", 60000}, {"h", 3600000}})
        if (end != std::string::npos && end > 0 && text.substr(end) == unit)
            return std::stoi(text) * ms;
    return std::nullopt;
}

std::filesystem::path Place(const std::string& path) {
    return path.starts_with("/") ? std::filesystem::path(path) : "/t" / std::filesystem::path(path);
}

std::string Shown(const std::filesystem::path& path) {
    return path.string().starts_with("/t/") ? path.string().substr(3) : path.string();
}

std::string OneLine(const std::string& text) {
    std::string line;
    for (const char character : text)
        line += character == '\n' ? "\\n" : character == '\r' ? "\\r" : std::string(1, character);
    return line;
}

// Lines that only the second text has.
std::vector<std::string> NewLines(const std::string& before, const std::string& now) {
    EEncoding encoding{};
    std::vector<std::string> old = SplitLines(DecodeText(before, encoding));
    const std::string text = DecodeText(now, encoding);
    std::vector<std::string> lines;
    if (encoding == EEncoding::Utf16LittleEndian)
        lines.emplace_back("(UTF-16)");
    for (const std::string& line : SplitLines(text))
        if (const auto same = std::ranges::find(old, line); same != old.end())
            old.erase(same);
        else
            lines.push_back(line);
    return lines;
}

TScreen ScreenOf(const TWorld& world) {
    return {world.Forms(), *world.Program};
}

// What the program shows once it is started and linked, and before that at its first dialog. A journey tells
// how its own start differs.
struct TUsualScreens {
    TUsualScreens() {
        TJourneyCase usual{"", {{"start linked", "start", "linked", {}}, {"run 5s", "run", "5s", {}}}};
        TJourney journey(usual);
        journey.OnStep = [&] { (Started.IsEmpty() ? Started : Logging) = ScreenOf(journey.World); };
        journey.Play();
        StartTold = journey.AllTold;
        TJourneyCase asked{"", {{"start", "start", "", {}}}};
        TJourney dialog(asked);
        dialog.OnDialog = [&] { FirstDialog = ScreenOf(dialog.World); };
        dialog.Play();
    }
    TScreen Started, Logging, FirstDialog;
    std::vector<std::string> StartTold;
    static const TUsualScreens* Known;
};
const TUsualScreens* TUsualScreens::Known = nullptr;

// Told at each start that is signed in and linked.
bool IsUsual(const std::string& line) {
    return TUsualScreens::Known != nullptr &&
           std::ranges::find(TUsualScreens::Known->StartTold, line) != TUsualScreens::Known->StartTold.end();
}

EKey KeyOf(const std::string& name) {
    for (const EKey key : {EKey::F1, EKey::F2, EKey::F3, EKey::F4, EKey::F5, EKey::F6, EKey::F7, EKey::F8,
                           EKey::F9, EKey::F10, EKey::F11, EKey::F12})
        if (ShortCutText(key) == name)
            return key;
    return name == "Escape" ? EKey::Escape : name == "Return" ? EKey::Return : EKey::Other;
}

} // namespace

std::vector<TJourneyCase> ReadJourney(const std::filesystem::path& path) {
    return ParseJourney(TDiskFiles().Read(path));
}

std::vector<TJourneyCase> ParseJourney(const std::string& text) {
    std::vector<TJourneyCase> cases;
    std::string above; // comments and blank lines
    for (const std::string& line : SplitLines(text)) {
        if (line.starts_with("== ")) {
            cases.push_back({above + line, {}});
            above.clear();
        } else if (line.empty() || line[0] == '#') {
            above += line + "\n";
        } else if (line[0] == '>') {
            continue; // told anew
        } else {
            const auto [verb, rest] = Split(line);
            cases.at(cases.size() - 1).Steps.push_back({above + line, verb, rest, {}});
            above.clear();
        }
    }
    return cases;
}

std::string WriteJourney(const std::vector<TJourneyCase>& cases) {
    std::string text;
    for (const TJourneyCase& one : cases) {
        text += one.Title + "\n";
        for (const auto& step : one.Steps) {
            text += step.Text + "\n";
            for (const std::string& line : step.Told)
                text += "> " + line + "\n";
        }
    }
    return text;
}

TJourney::TJourney(TJourneyCase& journey) : Case(journey) {
    World.OnExchange = [this](const std::string& call) { Calls.push_back(call); };
    World.Time.OnException = [this](const std::exception& error) {
        ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    };
    Files = World.Files.Content;
}

TJourney::~TJourney() {
    World.End(); // which tells its end
}

void TJourney::Play() {
    for (auto& step : Case.Steps)
        step.Told.clear();
    while (HasNext())
        TakeNext();
    Ended = true;
    RunGuarded(*this, [this] {
        if (OnEnd)
            OnEnd();
        if (World.Program)
            World.Close();
    });
    World.End();
    if (!Lenient) {
        EXPECT_EQ(World.Nabto.OpenStreams(), 0U);
        EXPECT_EQ(World.Nabto.OpenSessions(), 0U);
    }
}

void TJourney::TakeNext() {
    auto& step = Case.Steps[Next++];
    Take(step.Verb, step.Rest);
    if (World.Program && OnStep)
        OnStep();
    Flush();
    if (WaitCursor && Modals == 0)
        Fail("the wait cursor stays");
    if (World.KHelper.Loaded > 0 && !World.Program->NabtoLogOn.Visible())
        Fail("the library of the logon stays loaded");
}

void TJourney::Take(const std::string& verb, const std::string& rest) {
    static const std::map<std::string, TVerb> verbs{
        {"start", &TJourney::StartStep},     {"close", &TJourney::CloseStep}, {"edit", &TJourney::EditStep},
        {"fault", &TJourney::FaultStep},     {"menu", &TJourney::ClickStep},  {"click", &TJourney::ClickStep},
        {"type", &TJourney::TypeStep},       {"key", &TJourney::KeyStep},     {"pick", &TJourney::PickStep},
        {"run", &TJourney::RunStep},         {"rows", &TJourney::RowsStep},   {"file", &TJourney::FileStep},
        {"picture", &TJourney::PictureStep}, {"size", &TJourney::SizeStep},   {"help", &TJourney::HelpStep}};
    const auto found = verbs.find(verb);
    if (found == verbs.end())
        return Fail(verb == "answer" ? "no dialog is open" : "no such verb");
    if (!World.Program && verb != "start" && verb != "edit" && verb != "fault" && verb != "file" &&
        verb != "run")
        return Fail("the program is not open");
    RunGuarded(*this, [&] { (this->*found->second)(rest); }); // as the program's general handler
}

void TJourney::Fail(const std::string& why) const {
    if (!Lenient)
        ADD_FAILURE() << Case.Title << ": " << (Next > 0 ? Case.Steps[Next - 1].Text : "") << ": " << why;
}

void TJourney::Tell(const std::string& line) {
    TellCalls();
    Pending.push_back(OneLine(line));
}

void TJourney::TellCalls() {
    if (!Calls.empty())
        Pending.push_back(JoinCalls(std::exchange(Calls, {})));
    std::string processes;
    for (; ProcessCalls < World.Process.Calls.size(); ++ProcessCalls)
        processes += (processes.empty() ? "program: " : "; ") + World.Process.Calls[ProcessCalls];
    if (!processes.empty())
        Pending.push_back(processes);
    for (; Errors < World.Application.Errors.size(); ++Errors)
        Pending.push_back("stderr: " + World.Application.Errors[Errors]);
}

void TJourney::TellFiles() {
    constexpr std::size_t most = 4;
    const auto& now = World.Files.Content;
    std::string all; // short texts share a line
    const auto tell = [this, &all](const std::string& text) {
        if (!all.empty() && all.size() + text.size() > 150)
            Pending.push_back(std::exchange(all, {}));
        all += (all.empty() ? "" : "; ") + text;
    };
    for (const auto& [path, bytes] : now) {
        const auto old = Files.find(path);
        if (old == Files.end()) {
            tell("wrote " + Shown(path) + ", " + std::to_string(SplitLines(bytes).size()) + " lines");
        } else if (old->second != bytes) {
            const auto lines = NewLines(old->second, bytes);
            std::string text = "changed " + Shown(path);
            for (std::size_t i = 0; i < lines.size() && i < most; ++i)
                text += (i == 0 ? ": " : " | ") + lines[i];
            tell(text + (lines.size() > most ? " | ... " + std::to_string(lines.size()) : ""));
        }
    }
    for (const auto& [path, bytes] : Files)
        if (!now.contains(path))
            tell("removed " + Shown(path));
    if (!all.empty())
        Pending.push_back(all);
    if (Files != now)
        Files = now;
}

void TJourney::Flush() {
    if (Lenient || Next == 0)
        return;
    TellCalls();
    TellFiles();
    if (World.Program && World.Application.IsTerminated) {
        if (!std::exchange(EndTold, true))
            Pending.push_back("the program ends");
    } else if (World.Program && Boxed == 0 && !World.Program->Splashscreen.Visible()) {
        TScreen now = ScreenOf(World);
        // Behind the start the whole difference of the main form is told.
        for (std::string& line : now.ChangesSince(Screen, Starting ? "FormMain" : ""))
            Pending.push_back(std::move(line));
        Screen = std::move(now);
        AskedAtStart = Starting;
    }
    auto& told = Case.Steps[Next - 1].Told;
    if (TUsualScreens::Known == nullptr)
        AllTold.insert(AllTold.end(), Pending.begin(), Pending.end());
    if (Case.Steps[Next - 1].Text.ends_with("start linked") ||
        Case.Steps[Next - 1].Text.ends_with("start logging"))
        std::erase_if(Pending, &IsUsual);
    for (std::string& line : std::exchange(Pending, {})) {
        const bool isRow = line.starts_with("| "); // of a file
        if (!told.empty() && !isRow && !told.back().starts_with("| ") &&
            told.back().size() + line.size() < 146)
            told.back() += " // " + line;
        else
            told.push_back(std::move(line));
    }
}

std::optional<std::string> TJourney::Answer(const std::string& dialog) {
    Tell(dialog);
    if (OnDialog)
        OnDialog();
    ++Modals;
    ++Boxed;
    const TAtExit over([this] {
        --Modals;
        --Boxed;
    });
    Flush();
    while (HasNext() && !World.Application.IsTerminated) {
        if (NextIs("answer")) {
            const std::string& text = Case.Steps[Next++].Rest;
            return text.empty() ? std::nullopt : std::optional(text);
        }
        static const std::vector<std::string> allowed{"fault", "close", "run", "edit"};
        if (std::ranges::find(allowed, Case.Steps[Next].Verb) == allowed.end())
            break;
        TakeNext();
    }
    if (!World.Application.IsTerminated && !Ended)
        Fail("no answer to: " + dialog);
    return std::nullopt;
}

EModalResult TJourney::ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) {
    static const std::map<EMessageKind, std::string> kinds{{EMessageKind::Plain, "box"},
                                                           {EMessageKind::Information, "information"},
                                                           {EMessageKind::Warning, "warning"},
                                                           {EMessageKind::Error, "error"},
                                                           {EMessageKind::Confirmation, "question"}};
    Boxes.push_back(text);
    const std::string told = kinds.at(kind) + " \"" + text + "\"";
    std::size_t answer = Next; // below a box without one, only the weather may turn
    while (!Ended && answer < Case.Steps.size() && Case.Steps[answer].Verb == "fault")
        ++answer;
    if (buttons == EButtons::Ok &&
        (Ended || answer == Case.Steps.size() || Case.Steps[answer].Verb != "answer")) {
        Tell(told);
        if (OnDialog)
            OnDialog();
        return EModalResult::Ok;
    }
    const auto button = Answer(told + (buttons == EButtons::YesNo      ? " Yes/No"
                                       : buttons == EButtons::OkCancel ? " Ok/Cancel"
                                                                       : ""));
    if (button == "Yes" && buttons == EButtons::YesNo)
        return EModalResult::Yes;
    if (button == "Ok" && buttons != EButtons::YesNo)
        return EModalResult::Ok;
    if (button && button != "No" && button != "Cancel")
        Fail("no such button");
    return buttons == EButtons::Ok      ? EModalResult::Ok
           : buttons == EButtons::YesNo ? EModalResult::No
                                        : EModalResult::Cancel;
}

std::optional<std::string> TJourney::InputBox(const std::string& title, const std::string& prompt,
                                              const std::string& text) {
    return Answer("input \"" + title + "\" \"" + prompt + "\" \"" + text + "\"");
}

namespace {

std::string DialogText(const std::string& kind, const TFileDialog& dialog) {
    std::string text = kind + " \"" + dialog.Title + "\" in " + Shown(dialog.InitialDirectory);
    for (std::size_t i = 0; i < dialog.Filters.size(); ++i)
        text += (i == 0 ? ": " : " | ") + dialog.Filters[i].Caption + " " + dialog.Filters[i].Mask +
                (i == dialog.SelectedFilter && i > 0 ? " <" : "");
    return text + (dialog.FileMustExist ? ", must exist" : "") + (dialog.AskOverwrite ? "" : ", unasked");
}

} // namespace

std::optional<std::filesystem::path> TJourney::OpenFile(const TFileDialog& dialog) {
    const auto answer = Answer(DialogText("open", dialog));
    return answer ? std::optional(Place(*answer)) : std::nullopt;
}

std::vector<std::filesystem::path> TJourney::OpenFiles(const TFileDialog& dialog) {
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : Words(Answer(DialogText("open many", dialog)).value_or("")))
        paths.push_back(Place(name));
    return paths;
}

// "PATH" or "PATH filter NUMBER".
std::optional<std::filesystem::path> TJourney::SaveFile(const TFileDialog& dialog, std::size_t& filter) {
    const auto words = Words(Answer(DialogText("save", dialog)).value_or(""));
    filter = words.size() == 3 ? std::stoul(words[2]) : 0;
    return words.empty() ? std::nullopt : std::optional(Place(words[0]));
}

EModalResult TJourney::ShowModal(TForm& form) {
    form.Open();
    if (OnDialog)
        OnDialog();
    ++Modals;
    Modal.push_back(&form);
    const TAtExit over([this, &form] {
        --Modals;
        std::erase(Modal, &form);
    });
    Flush();
    while (HasNext() && form.Visible() && form.ModalResult() == EModalResult::None &&
           !World.Application.IsTerminated)
        TakeNext();
    const EModalResult result = form.ModalResult();
    if (form.Visible()) {
        form.Close();
        if (result != EModalResult::None)
            form.SetModalResult(result);
    }
    return form.ModalResult();
}

void TJourney::TellSplash(std::int64_t passed) {
    const std::string line =
        "splash " + std::to_string(passed) + " \"" + World.Program->Splashscreen.infostring.Caption() + "\"";
    if (!IsUsual(line))
        Tell(line);
}

void TJourney::Show(TForm& form) {
    if (&form == &World.Program->Splashscreen)
        Splash = World.Program->Splashscreen.infostring.Changed.Connect(
            [this, start = World.Time.Milliseconds()] { TellSplash(World.Time.Milliseconds() - start); });
    if (!form.Visible())
        form.Open();
}

void TJourney::Popup(TPopupMenu& menu) {
    std::string text = "popup " + menu.Name() + ":";
    for (const TMenuItem& item : menu.Items)
        if (item.Visible())
            text += " " + item.Name() + (item.Enabled() ? "" : " (disabled)");
    if (!NextIs("menu")) // which says it all
        Tell(text);
    if (OnDialog)
        OnDialog();
    if (NextIs("menu"))
        TakeNext();
    else if (NextIs("answer"))
        ++Next;
}

void TJourney::StartStep(const std::string& rest) {
    static bool making = false;
    if (!making && TUsualScreens::Known == nullptr && !Lenient) {
        making = true;
        static const TUsualScreens known;
        TUsualScreens::Known = &known;
        making = false;
    }
    if (World.Program && World.Application.IsTerminated) {
        World.Program->Finish();
        World.End();
    }
    if (World.Program)
        return Fail("the program is open");
    if (TUsualScreens::Known != nullptr)
        Screen = TUsualScreens::Known->FirstDialog;
    Starting = true;
    AskedAtStart = EndTold = false;
    const bool isLogging = rest == "logging";
    const TAtExit started([this, isLogging] {
        Starting = false;
        if (TUsualScreens::Known == nullptr)
            return;
        const TScreen& usual = isLogging ? TUsualScreens::Known->Logging : TUsualScreens::Known->Started;
        if (!AskedAtStart)
            Screen = usual;
        Screen.TakeForm("FormMain", usual);
    });
    World.Start(*this, rest == "linked" || isLogging ? linked : Words(rest));
    TellCalls();
    if (isLogging)
        World.Time.Advance(5000);
}

void TJourney::CloseStep(const std::string& rest) {
    if (!rest.empty()) {
        if (auto* const form = dynamic_cast<TForm*>(Find(rest)))
            return form->Close();
        return Fail("no such form");
    }
    World.Program->FormMain.Close();
    if (Modals > 0)
        return;
    World.Program->Finish();
    TellCalls();
    World.End();
}

void TJourney::EditStep(const std::string& rest) {
    const auto [file, change] = Split(rest);
    const auto path = Place(file);
    const std::string text = Unescaped(change.size() > 2 ? change.substr(2) : std::string());
    if (change == "-") {
        World.Files.Content.erase(path);
    } else if (change.starts_with("= ") || change == "=") {
        World.Files.Put(path, text);
    } else if (change.starts_with("+")) { // "+ LINE", or "+20 LINE" for as many
        const auto [times, line] = Split(Unescaped(change.substr(1)));
        for (int i = std::max(ToIntegerOr(times, 1), 1); i > 0; --i)
            World.Files.Put(path, World.Files.Content[path] + line + "\r\n");
    } else if (const auto arrow = change.find(" => "); arrow != std::string::npos) {
        if (!World.Edit(path, Unescaped(change.substr(0, arrow)), Unescaped(change.substr(arrow + 4))))
            Fail("the file does not hold that");
    } else if (change.starts_with("from ")) {
        World.Files.Put(path, World.Files.Read(Place(change.substr(5))));
    } else if (change == "UTF-16") {
        World.Files.Put(path, EncodeText(World.Files.Read(path), EEncoding::Utf16LittleEndian));
    } else {
        Fail("no such change");
    }
    Files = World.Files.Content;
    if (path == TWorld::Simulation)
        World.Simulate();
}

void TJourney::FaultStep(const std::string& rest) {
    auto [name, rows] = Split(rest);
    if (name == "cloud")
        return FaultOfCloud(rows);
    if (name == "disk")
        return FaultOfDisk(rows);
    if (name == "library") {
        World.Libraries.Present = rows != "absent";
        World.Libraries.Missing.clear();
        if (!rows.empty() && rows != "absent")
            World.Libraries.Missing.insert(rows);
    } else if (name == "KHelper") {
        World.KHelper.Present = rows != "absent";
        World.KHelper.HasFunction = rows != "empty";
    } else if (name == "tools") {
        World.Process.CanStart = rows != "absent";
        World.Process.Output =
            rows.empty() || rows == "absent" ? std::nullopt : std::optional(Unescaped(rows));
    } else {
        for (std::size_t at = 0; (at = rows.find(" && ")) != std::string::npos;)
            rows.replace(at, 4, "\n");
        World.Simulated[name == "Library" ? name : "Faults " + name] = rows;
        World.Simulate();
    }
}

// Rows of its file, or "offline".
void TJourney::FaultOfCloud(const std::string& rows) {
    World.Online = rows != "offline";
    std::string lines = "[User one]\nPassword=one\n[Faults]\n"; // there has to be one
    for (const std::string& row : Words(rows))
        lines += (row == "offline" ? std::string() : row) + "\n";
    TMemoryFiles files;
    files.Put("/cloud.ini", lines);
    World.Cloud->SetFaults(ReadCloudConfig(TIniFile(files, "/cloud.ini")).Faults);
}

// Bytes that are left, a path that cannot be written, or "locked PATH".
void TJourney::FaultOfDisk(const std::string& rows) {
    World.Files.Room = static_cast<std::size_t>(-1);
    World.Files.Unwritable.clear();
    World.Files.Locked.clear();
    if (rows.starts_with("locked "))
        World.Files.Locked.insert(Place(rows.substr(7)));
    else if (const auto room = ToIntegerOr(rows, -1); room >= 0)
        World.Files.Room = static_cast<std::size_t>(room);
    else if (!rows.empty())
        World.Files.Unwritable.insert(Place(rows));
}

TForm* TJourney::TopForm() const {
    return Modal.empty() ? &World.Program->FormMain : Modal.back();
}

TControl* TJourney::Find(const std::string& name) const {
    const auto forms = World.Forms();
    for (TForm* form : forms) {
        if (form->Name() == name)
            return form;
        if (name.starts_with(form->Name() + "."))
            return form->FindControl(name.substr(form->Name().size() + 1));
    }
    if (TControl* const control = TopForm()->FindControl(name))
        return control;
    for (const TForm* form : forms)
        if (Modal.empty() && form->Visible())
            if (TControl* const control = form->FindControl(name))
                return control;
    Fail("there is no control " + name);
    return nullptr;
}

void TJourney::ClickStep(const std::string& rest) {
    const bool any = rest.starts_with("hidden ");
    TControl* const control = Find(any ? rest.substr(7) : rest);
    if (control == nullptr)
        return;
    if ((!control->Visible() && !any) || !control->Enabled())
        Tell(rest + " is " + (control->Visible() ? "disabled" : "hidden"));
    else if (const auto* button = dynamic_cast<TButton*>(control))
        any ? button->OnClick() : button->Click();
    else if (const auto* item = dynamic_cast<TMenuItem*>(control))
        any ? item->OnClick() : item->Click();
    else if (auto* const box = dynamic_cast<TCheckBox*>(control)) {
        box->SetChecked(!box->Checked());
        box->OnClick();
    } else if (const auto* mask = dynamic_cast<TMaskEdit*>(control))
        mask->OnClick();
    else if (const auto* colors = dynamic_cast<TColorList*>(control))
        colors->OnClick();
    else
        Fail("nothing to click");
}

void TJourney::TypeStep(const std::string& rest) {
    const auto [name, text] = Split(rest);
    TControl* const control = Find(name);
    if (auto* const edit = dynamic_cast<TEdit*>(control)) {
        edit->Enter(text);
        if (edit->Text() == text) // which the step says already
            Screen.Take(*control);
    } else if (auto* const mask = dynamic_cast<TMaskEdit*>(control)) {
        mask->SetText(text);
        mask->OnExit();
    } else if (const auto* grid = dynamic_cast<TStringGrid*>(control)) {
        grid->OnKeyPress(text);
    } else if (const auto* tree = dynamic_cast<TTreeView*>(control)) {
        tree->OnKeyPress(text);
    } else if (control != nullptr) {
        Fail("nothing to type into");
    }
}

// On the control, or the form on top.
void TJourney::KeyStep(const std::string& rest) {
    const auto words = Words(rest);
    TControl* const control = words.size() == 2 ? Find(words[0]) : TopForm();
    const EKey key = KeyOf(words.back());
    if (const auto* grid = dynamic_cast<TStringGrid*>(control))
        return grid->OnKeyPress(words.back() == "Space" ? " " : "\r");
    if (const auto* tree = dynamic_cast<TTreeView*>(control))
        return tree->OnKeyPress("\r");
    TSetpointPage& page = World.Program->SetpointPage;
    if (control == &page.SetpointFilter && key == EKey::Escape && page.ClearSetpointFilter())
        return;
    if (const auto* edit = dynamic_cast<TEdit*>(control))
        return edit->OnReturn();
    const auto* form = dynamic_cast<TForm*>(control);
    if (form == nullptr)
        return Fail("no keys there");
    bool handled = false;
    form->OnKeyDown(key, handled);
    if (!handled)
        Tell("the key is not taken");
}

void TJourney::PickStep(const std::string& rest) {
    const auto words = Words(rest);
    TControl* const control = Find(words[0]);
    const auto number = [&words](std::size_t index) {
        return index < words.size() ? ToIntegerOr(words[index], -1) : -1;
    };
    if (auto* const items = dynamic_cast<TItemsControl*>(control)) {
        if (number(1) < static_cast<int>(items->Items().size()))
            items->ClickItem(number(1));
        else
            Tell("there is no such row");
    } else if (auto* const pages = dynamic_cast<TPageControl*>(control)) {
        if (const auto* sheet = dynamic_cast<TTabSheet*>(Find(words[1])))
            pages->SetActivePage(*sheet);
    } else if (auto* const tree = dynamic_cast<TTreeView*>(control)) {
        const auto& nodes = tree->Nodes();
        const auto root = static_cast<std::size_t>(number(1));
        if (root >= nodes.size() || number(2) >= static_cast<int>(nodes[root].Children.size()))
            return Fail("no such node");
        tree->SetSelected(TTreeView::TSelection{number(1), number(2)});
        if (words.back() == "right")
            return tree->OnRightMouseButton();
        tree->OnOtherMouseButton();
        tree->OnClick();
    } else if (auto* const grid = dynamic_cast<TStringGrid*>(control)) {
        const int row = number(1);
        if (words.back() == "double")
            return grid->OnDblClick(row);
        grid->SetSelectedRow(row);
        grid->OnSelectCell(row);
        if (number(2) >= 0) {
            const TCellRect cell{0, 0, 100, 20};
            const TCellRect box = grid->BoxRect ? grid->BoxRect(cell) : cell;
            grid->OnClick({number(2), row, (box.Left + box.Right) / 2, (box.Top + box.Bottom) / 2, cell});
        }
    } else if (auto* const bar = dynamic_cast<TTrackBar2*>(control)) {
        bar->SetLowerPosition(number(1));
        bar->SetUpperPosition(number(2));
    } else if (auto* const scroll = dynamic_cast<TScrollBar*>(control)) {
        scroll->Scroll(words.back() == "drag" ? EScrollCode::Track : EScrollCode::End, number(1));
    } else if (control != nullptr) {
        Fail("nothing to pick");
    }
}

void TJourney::RunStep(const std::string& rest) {
    const auto [time, step] = Split(rest);
    const auto ms = Duration(time);
    if (!ms)
        return Fail("no time");
    if (step.empty())
        return World.Time.Advance(*ms);
    const auto [verb, words] = Split(step);
    World.Time.After(*ms, [this, step = step, verb = verb, words = words] {
        if (Ended || !World.Program)
            return;
        Tell("-- " + step);
        Take(verb, words);
    });
}

void TJourney::RowsStep(const std::string& rest) {
    const auto rows = static_cast<std::size_t>(ToIntegerOr(rest, 0));
    if (!World.Time.AdvanceUntil([this, rows] { return World.Program->LogBuffers.DatalogCount >= rows; },
                                 Lenient ? 60000 : 3600000))
        Fail("there are not so many rows in an hour");
}

void TJourney::FileStep(const std::string& rest) {
    constexpr std::size_t whole = 6; // lines of a file that is told from its start to its end
    const auto mask = Place(rest);
    for (const std::string& name : World.Files.List(mask.parent_path(), mask.filename().string())) {
        const std::string bytes = World.Files.Read(mask.parent_path() / name);
        const auto lines = SplitLines(bytes);
        char crc[16];
        std::snprintf(crc, sizeof crc, "%08x", Crc32(bytes));
        Tell(Shown(mask.parent_path() / name) + ", " + std::to_string(lines.size()) + " lines, crc " + crc);
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines.size() <= whole || i < 2 || i + 1 == lines.size())
                Tell("| " + (lines[i].size() > 120 ? lines[i].substr(0, 120) + "..." : lines[i]));
            else if (i == 2)
                Tell("| ...");
    }
}

// The form on top gets that width and height.
void TJourney::SizeStep(const std::string& rest) {
    const auto words = Words(rest);
    TopForm()->SetClientSize(ToIntegerOr(words.at(0), 0), ToIntegerOr(words.at(1), 0));
}

// There is a help document; the rows of that help number stand on that page.
void TJourney::HelpStep(const std::string& rest) {
    const auto words = Words(rest);
    THelpfileDoc& help = World.Program->ContextHelp.HelpfileDoc;
    help.Fileexist = true;
    help.DocAndPath = "/t/Help/aria.pdf";
    help.Doc = "aria.pdf";
    help.PDFReaderPrg = "/reader";
    help.Pages = {{ToIntegerOr(words.at(0), 0), ToIntegerOr(words.at(1), 0)}};
}

void TJourney::PictureStep(const std::string& rest) {
    for (const std::string& line : ScreenOf(World).Tell(rest))
        Tell(line);
}

} // namespace tidewell::test

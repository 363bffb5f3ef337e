#include "rig/Journey.h"

#include "core/AtExit.h"
#include "core/Guard.h"
#include "rig/Hands.h"
#include "rig/Weather.h"
#include "sim/controller/Firmware.h"

namespace tidewell::test {

namespace {

const std::vector<std::string> linked{"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

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

} // namespace

TJourney::TJourney(TJourneyCase& journey) : Case(journey) {
    World.Time.OnException = [this](const std::exception& error) {
        ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    };
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
    static const std::set<std::string> withoutProgram{"start", "edit", "fault", "file", "run"};
    if (!World.Program && !withoutProgram.contains(verb))
        return Fail("the program is not open");
    RunGuarded(*this, [&] { // as the program's general handler
        try {
            (this->*found->second)(rest);
        } catch (const TBadStep& bad) {
            Fail(bad.what());
        }
    });
}

void TJourney::Fail(const std::string& why) const {
    if (!Lenient)
        ADD_FAILURE() << Case.Title << ": " << (Next > 0 ? Case.Steps[Next - 1].Text : "") << ": " << why;
}

void TJourney::TellUnlessEmpty(const std::string& line) {
    if (!line.empty())
        Notes.Tell(line);
}

void TJourney::Flush() {
    if (Lenient || Next == 0)
        return;
    Notes.TellCalls();
    Notes.TellFiles();
    if (World.Program && World.Application.IsTerminated) {
        if (!std::exchange(EndTold, true))
            Notes.Tell("the program ends");
    } else if (World.Program && Boxed == 0 && !World.Program->Splashscreen.Visible()) {
        TScreen now = ScreenOf(World);
        // Behind the start the whole difference of the main form is told.
        for (const std::string& line : now.ChangesSince(Screen, Starting ? "FormMain" : ""))
            Notes.Tell(line);
        Screen = std::move(now);
        AskedAtStart = Starting;
    }
    auto& step = Case.Steps[Next - 1];
    std::vector<std::string> lines = Notes.TakeLines();
    if (TUsualScreens::Known == nullptr)
        AllTold.insert(AllTold.end(), lines.begin(), lines.end());
    if (step.Text.ends_with("start linked") || step.Text.ends_with("start logging"))
        std::erase_if(lines, &IsUsual);
    const TTime now = World.Time.Now();
    const std::string time = " " + World.Time.ShortTime(now) + " " + World.Time.ShortDate(now) + "\"";
    for (std::string& line : lines) {
        for (std::size_t at = 0; (at = line.find(time, at)) != std::string::npos;)
            line.replace(at, time.size(), " now\"");
        const auto isRow = [](const std::string& text) { return text.starts_with("| "); }; // of a file
        auto& told = step.Told;
        if (!told.empty() && !isRow(line) && !isRow(told.back()) && Joins(told.back(), line))
            told.back() += " // " + line;
        else
            told.push_back(std::move(line));
    }
}

std::optional<std::string> TJourney::Answer(const std::string& dialog) {
    Notes.Tell(dialog);
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
        Notes.Tell(told);
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
        Notes.Tell(line);
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
        Notes.Tell(text);
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
        throw TBadStep("the program is open");
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
    Notes.TellCalls();
    if (isLogging)
        World.Time.Advance(5000);
}

void TJourney::CloseStep(const std::string& rest) {
    if (!rest.empty()) {
        if (auto* const form = dynamic_cast<TForm*>(&Find(rest)))
            return form->Close();
        throw TBadStep("no such form");
    }
    World.Program->FormMain.Close();
    if (Modals > 0)
        return;
    World.Program->Finish();
    Notes.TellCalls();
    World.End();
}

void TJourney::EditStep(const std::string& rest) {
    EditFile(World, rest);
    Notes.TakeFiles();
}

void TJourney::FaultStep(const std::string& rest) {
    SetFault(World, rest);
}

TForm* TJourney::TopForm() const {
    return Modal.empty() ? &World.Program->FormMain : Modal.back();
}

TControl& TJourney::Find(const std::string& name) const {
    const auto forms = World.Forms();
    std::vector<TForm*> open{TopForm()};
    if (Modal.empty())
        std::ranges::copy_if(forms, std::back_inserter(open), [](auto* form) { return form->Visible(); });
    const auto point = name.find('.');
    for (TForm* form : forms) {
        if (form->Name() == name)
            return *form;
        if (form->Name() == name.substr(0, point))
            open = {form};
    }
    for (const TForm* form : open)
        if (TControl* const control =
                form->FindControl(name.substr(point == std::string::npos ? 0 : point + 1)))
            return *control;
    throw TBadStep("there is no control " + name);
}

void TJourney::ClickStep(const std::string& rest) {
    const auto [word, name] = SplitFirst(rest);
    const bool evenHidden = word == "hidden";
    TControl& control = Find(evenHidden ? name : rest);
    if (!Takes(control, "click", ""))
        TellUnlessEmpty(Click(control, evenHidden));
}

void TJourney::TypeStep(const std::string& rest) {
    const auto [name, text] = SplitFirst(rest);
    TControl& control = Find(name);
    if (!Takes(control, "type", text))
        Type(control, text);
    if (const auto* edit = dynamic_cast<TEdit*>(&control); edit != nullptr && edit->Text() == text)
        Screen.Take(control); // the step says it already
}

// On the control, or the form on top.
void TJourney::KeyStep(const std::string& rest) {
    const auto words = Words(rest);
    TSetpointPage& page = World.Program->SetpointPage;
    TControl& control = words.size() == 2 ? Find(words[0]) : *TopForm();
    if (Takes(control, "key", words.back()))
        return;
    if (&control != &page.SetpointFilter || words.back() != "Escape" || !page.ClearSetpointFilter())
        TellUnlessEmpty(Press(control, words.back()));
}

void TJourney::PickStep(const std::string& rest) {
    const auto [name, words] = SplitFirst(rest);
    TControl& control = Find(name);
    if (!Takes(control, "pick", words))
        TellUnlessEmpty(Pick(control, Words(words)));
}

void TJourney::RunStep(const std::string& rest) {
    const auto [time, step] = SplitFirst(rest);
    const auto ms = Duration(time);
    if (!ms)
        throw TBadStep("no time");
    if (step.empty())
        return World.Time.Advance(*ms);
    const auto [verb, words] = SplitFirst(step);
    World.Time.After(*ms, [this, step = step, verb = verb, words = words] {
        if (Ended || !World.Program)
            return;
        Notes.Tell("-- " + step);
        Take(verb, words);
    });
}

void TJourney::RowsStep(const std::string& rest) {
    const auto rows = static_cast<std::size_t>(ToIntegerOr(rest, 0));
    if (!World.Time.AdvanceUntil([this, rows] { return World.Program->LogBuffers.DatalogCount >= rows; },
                                 Lenient ? 60000 : 3600000))
        throw TBadStep("there are not so many rows in an hour");
}

void TJourney::FileStep(const std::string& rest) {
    constexpr std::size_t whole = 6; // lines of a file that is told from its start to its end
    const auto mask = Place(rest);
    for (const std::string& name : World.Files.List(mask.parent_path(), mask.filename().string())) {
        const std::string bytes = World.Files.Read(mask.parent_path() / name);
        const auto lines = SplitLines(bytes);
        char crc[16];
        std::snprintf(crc, sizeof crc, "%08x", Crc32(bytes));
        Notes.Tell(Shown(mask.parent_path() / name) + ", " + std::to_string(lines.size()) + " lines, crc " +
                   crc);
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines.size() <= whole || i < 2 || i + 1 == lines.size())
                Notes.Tell("| " + (lines[i].size() > 120 ? lines[i].substr(0, 120) + "..." : lines[i]));
            else if (i == 2)
                Notes.Tell("| ...");
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

// With a second word only something to paint.
void TJourney::PictureStep(const std::string& rest) {
    if (const auto [form, name] = SplitFirst(rest); !name.empty()) {
        if (OnPicture)
            OnPicture(form, name);
        return;
    }
    for (const std::string& line : ScreenOf(World).Tell(rest))
        Notes.Tell(line);
}

} // namespace tidewell::test

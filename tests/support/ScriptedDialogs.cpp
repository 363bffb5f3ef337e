#include "support/ScriptedDialogs.h"

#include "core/AtExit.h"
#include "core/controls/Form.h"
#include "core/controls/Menu.h"

#include <gtest/gtest.h>

#include <utility>

namespace tidewell::test {

TScriptedDialogs::~TScriptedDialogs() {
    for (const auto& step : Script)
        ADD_FAILURE() << "never shown: " << step.Kind << " \"" << step.Text << "\"";
}

void TScriptedDialogs::ExpectMessage(const std::string& text, EModalResult answer) {
    Script.push_back({"message", text, answer, {}, {}, {}, {}, {}, 0});
}

void TScriptedDialogs::AllowMessage(const std::string& text, EModalResult answer) {
    Allowed.push_back({"message", text, answer, {}, {}, {}, {}, {}, 0});
}

void TScriptedDialogs::ExpectInput(const std::string& title, std::optional<std::string> answer) {
    Script.push_back({"input", title, EModalResult::None, std::move(answer), {}, {}, {}, {}, 0});
}

void TScriptedDialogs::ExpectOpenFile(const std::string& title, std::optional<std::filesystem::path> answer) {
    Script.push_back({"open", title, EModalResult::None, {}, std::move(answer), {}, {}, {}, 0});
}

void TScriptedDialogs::ExpectOpenFiles(const std::string& title, std::vector<std::filesystem::path> answer) {
    Script.push_back({"open many", title, EModalResult::None, {}, {}, {}, {}, std::move(answer)});
}

void TScriptedDialogs::ExpectSaveFile(const std::string& title, std::optional<std::filesystem::path> answer,
                                      std::size_t filter) {
    Script.push_back({"save", title, EModalResult::None, {}, std::move(answer), {}, {}, {}, filter});
}

void TScriptedDialogs::ExpectForm(const std::string& name, std::function<void(TForm&)> action) {
    Script.push_back({"form", name, EModalResult::None, {}, {}, std::move(action), {}, {}, 0});
}

void TScriptedDialogs::ExpectPopup(const std::string& name, std::function<void(TPopupMenu&)> action) {
    Script.push_back({"popup", name, EModalResult::None, {}, {}, {}, std::move(action), {}, 0});
}

std::vector<std::string> TScriptedDialogs::Texts() const {
    std::vector<std::string> texts;
    texts.reserve(Shown.size());
    for (const auto& shown : Shown)
        texts.push_back(shown.Text);
    return texts;
}

std::optional<TScriptedDialogs::TStep> TScriptedDialogs::Take(const std::string& kind,
                                                              const std::string& text) {
    if (!Script.empty() && Script.front().Kind == kind && Script.front().Text == text) {
        TStep step = std::move(Script.front());
        Script.pop_front();
        return step;
    }
    for (const auto& step : Allowed)
        if (step.Kind == kind && step.Text == text)
            return step;
    ADD_FAILURE() << "unexpected " << kind << " \"" << text << "\""
                  << (Script.empty()
                          ? std::string()
                          : ", waiting for " + Script.front().Kind + " \"" + Script.front().Text + "\"");
    return std::nullopt;
}

EModalResult TScriptedDialogs::ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) {
    Shown.push_back({kind, text, buttons});
    if (const auto step = Take("message", text))
        return step->Answer;
    return buttons == EButtons::Ok      ? EModalResult::Ok
           : buttons == EButtons::YesNo ? EModalResult::No
                                        : EModalResult::Cancel;
}

std::optional<std::string> TScriptedDialogs::InputBox(const std::string& title, const std::string&,
                                                      const std::string& text) {
    LastInputText = text;
    Shown.push_back({EMessageKind::Plain, title, EButtons::OkCancel});
    const auto step = Take("input", title);
    return step ? step->Input : std::nullopt;
}

std::optional<std::filesystem::path> TScriptedDialogs::OpenFile(const TFileDialog& dialog) {
    Shown.push_back({EMessageKind::Plain, dialog.Title, EButtons::OkCancel});
    LastFileDialog = dialog;
    const auto step = Take("open", dialog.Title);
    return step ? step->Path : std::nullopt;
}

std::vector<std::filesystem::path> TScriptedDialogs::OpenFiles(const TFileDialog& dialog) {
    Shown.push_back({EMessageKind::Plain, dialog.Title, EButtons::OkCancel});
    LastFileDialog = dialog;
    const auto step = Take("open many", dialog.Title);
    return step ? step->Paths : std::vector<std::filesystem::path>();
}

std::optional<std::filesystem::path> TScriptedDialogs::SaveFile(const TFileDialog& dialog,
                                                                std::size_t& filter) {
    Shown.push_back({EMessageKind::Plain, dialog.Title, EButtons::OkCancel});
    LastFileDialog = dialog;
    const auto step = Take("save", dialog.Title);
    filter = step ? step->Filter : 0;
    return step ? step->Path : std::nullopt;
}

EModalResult TScriptedDialogs::ShowModal(TForm& form) {
    Shown.push_back({EMessageKind::Plain, form.Name(), EButtons::OkCancel});
    form.Open();
    ++Modals;
    const TAtExit shown([this] { --Modals; });
    if (const auto step = Take("form", form.Name()); step && step->Form)
        step->Form(form);
    if (form.ModalResult() == EModalResult::None) {
        form.Close();
    } else if (form.Visible()) {
        const EModalResult result = form.ModalResult();
        form.Close();
        form.SetModalResult(result);
    }
    return form.ModalResult();
}

void TScriptedDialogs::Show(TForm& form) {
    if (!form.Visible())
        form.Open();
}

void TScriptedDialogs::Popup(TPopupMenu& menu) {
    Shown.push_back({EMessageKind::Plain, menu.Name(), EButtons::OkCancel});
    if (const auto step = Take("popup", menu.Name()); step && step->Menu)
        step->Menu(menu);
}

} // namespace tidewell::test

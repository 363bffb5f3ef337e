#pragma once

#include "core/ports/IDialogs.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace tidewell::test {

// Dialogs answered by a script. A dialog that no answer was given for fails the test, and so does an answer
// left over when the object dies. Everything shown is kept in Shown, in order.
class TScriptedDialogs : public IDialogs {
  public:
    ~TScriptedDialogs() override;

    // The next message box must bear this text; it gets this answer.
    void ExpectMessage(const std::string& text, EModalResult answer = EModalResult::Ok);
    // The same box any number of times from now on, wherever the script does not expect it next.
    void AllowMessage(const std::string& text, EModalResult answer = EModalResult::Ok);
    void ExpectInput(const std::string& title, std::optional<std::string> answer);
    void ExpectOpenFile(const std::string& title, std::optional<std::filesystem::path> answer);
    void ExpectOpenFiles(const std::string& title, std::vector<std::filesystem::path> answer);
    void ExpectSaveFile(const std::string& title, std::optional<std::filesystem::path> answer,
                        std::size_t filter = 0);
    // The next modal form must bear this Name. The action drives it; if it sets no result the form is closed.
    void ExpectForm(const std::string& name, std::function<void(TForm&)> action);
    void ExpectPopup(const std::string& name, std::function<void(TPopupMenu&)> action = {});
    // True when the script has run out.
    bool AllAnswered() const { return Script.empty(); }

    struct TShown {
        EMessageKind Kind = EMessageKind::Plain;
        std::string Text; // of a message box, or title or Name of what else was shown
        EButtons Buttons = EButtons::Ok;
    };
    std::vector<TShown> Shown;
    std::vector<std::string> Texts() const; // of Shown
    TFileDialog LastFileDialog;
    std::string LastInputText; // that the last input box started with
    bool WaitCursor = false;
    int WorkArea = 1040;

    EModalResult ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) override;
    using IDialogs::InputBox;
    std::optional<std::string> InputBox(const std::string& title, const std::string& prompt,
                                        const std::string& text) override;
    std::optional<std::filesystem::path> OpenFile(const TFileDialog& dialog) override;
    std::vector<std::filesystem::path> OpenFiles(const TFileDialog& dialog) override;
    using IDialogs::SaveFile;
    std::optional<std::filesystem::path> SaveFile(const TFileDialog& dialog, std::size_t& filter) override;
    EModalResult ShowModal(TForm& form) override;
    void Show(TForm& form) override;
    void Popup(TPopupMenu& menu) override;
    bool IsModalOpen() const override { return Modals > 0; }
    void SetWaitCursor(bool wait) override { WaitCursor = wait; }
    int WorkAreaHeight() const override { return WorkArea; }

  protected:
    int Modals = 0; // that something happens below just now

  private:
    struct TStep {
        std::string Kind; // "message", "input", "open", "open many", "save", "form", "popup"
        std::string Text;
        EModalResult Answer = EModalResult::None;
        std::optional<std::string> Input;
        std::optional<std::filesystem::path> Path;
        std::function<void(TForm&)> Form;
        std::function<void(TPopupMenu&)> Menu;
        std::vector<std::filesystem::path> Paths;
        std::size_t Filter = 0;
    };
    std::optional<TStep> Take(const std::string& kind, const std::string& text);

    std::deque<TStep> Script;
    std::vector<TStep> Allowed;
};

} // namespace tidewell::test

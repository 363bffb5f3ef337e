#pragma once

#include "core/ports/IDialogs.h"
#include "rig/JourneyText.h"
#include "rig/Notes.h"
#include "rig/Screen.h"
#include "rig/World.h"

namespace tidewell::test {

// Plays one case: the person at the program, and the program's dialogs, below which the next steps are taken.
// What happens is told behind the step in which it does. docs/testing.md lists the verbs.
class TJourney : public IDialogs {
  public:
    explicit TJourney(TJourneyCase& journey);
    ~TJourney() override;
    TJourney(const TJourney&) = delete;
    TJourney& operator=(const TJourney&) = delete;

    // Takes all steps, and closes what is left open. What a step told before is replaced.
    void Play();

    TWorld World;
    // Behind each step, while the program is open.
    std::function<void()> OnStep;
    // At each dialog, once it is open.
    std::function<void()> OnDialog;
    // When all steps are taken, before what is left open is closed.
    std::function<void()> OnEnd;
    // A form is to be painted under that name.
    std::function<void(const std::string& form, const std::string& name)> OnPicture;
    // Does what the person does to a control, a step's verb and words, if it can.
    std::function<bool(const TControl& control, const std::string& verb, const std::string& words)> OnHands;
    // Goes on where the journey and the program part: steps that cannot be taken are left out, and dialogs
    // that no answer stands for are cancelled. Nothing is told.
    bool Lenient = false;
    // No step is taken any more.
    bool Ended = false;
    const std::string& StepText() const {
        return Case.Steps[Next == 0 ? 0 : Next - 1].Text;
    }                                 // the last one taken
    std::vector<std::string> Boxes;   // texts of all message boxes
    std::vector<std::string> AllTold; // before the usual start is known

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
    int WorkAreaHeight() const override { return 1040; }

  private:
    using TVerb = void (TJourney::*)(const std::string& rest);
    bool HasNext() const { return !Ended && Next < Case.Steps.size(); }
    bool NextIs(std::string_view verb) const { return HasNext() && Case.Steps[Next].Verb == verb; }
    void TakeNext();
    void Take(const std::string& verb, const std::string& rest);
    // The text of the answer that must stand next, below this dialog; nothing when it is cancelled.
    std::optional<std::string> Answer(const std::string& dialog);
    void Fail(const std::string& why) const;

    void TellUnlessEmpty(const std::string& line);
    void TellSplash(std::int64_t passed);
    void Flush(); // what has happened since, to the step that was taken last

    void StartStep(const std::string& rest);
    void CloseStep(const std::string& rest);
    void EditStep(const std::string& rest);
    void FaultStep(const std::string& rest);
    void ClickStep(const std::string& rest);
    void TypeStep(const std::string& rest);
    void KeyStep(const std::string& rest);
    void PickStep(const std::string& rest);
    void RunStep(const std::string& rest);
    void RowsStep(const std::string& rest);
    void FileStep(const std::string& rest);
    void PictureStep(const std::string& rest);
    void SizeStep(const std::string& rest);
    void HelpStep(const std::string& rest);

    bool Takes(const TControl& control, const std::string& verb, const std::string& words) const {
        return OnHands && OnHands(control, verb, words);
    }
    // The control of that name, on the topmost form that has one, or on "Form.Name". Throws TBadStep.
    TControl& Find(const std::string& name) const;
    TForm* TopForm() const;

    TJourneyCase& Case;
    std::size_t Next = 0; // step
    TNotes Notes{World};
    TScreen Screen;
    std::vector<TForm*> Modal; // from the bottom up
    int Modals = 0;
    int Boxed = 0; // boxes and file dialogs of those, below which the screen is not told
    bool WaitCursor = false;
    bool Starting = false;
    bool AskedAtStart = false; // by a dialog, at which the screen was told
    bool EndTold = false;
    TConnection Splash; // tells its lines
};

} // namespace tidewell::test

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

class TForm;
class TPopupMenu;

enum class EMessageKind { Plain, Information, Warning, Error, Confirmation };
enum class EButtons { Ok, OkCancel, YesNo };
// What ended a message box or a modal form. A box closed by its frame or Esc gives Cancel (No for YesNo, Ok
// for Ok).
enum class EModalResult { None, Ok, Cancel, Yes, No };

struct TFileFilter {
    std::string Caption;
    std::string Mask; // one or more masks, separated by ";"
};

struct TFileDialog {
    std::string Title;
    std::filesystem::path InitialDirectory;
    std::vector<TFileFilter> Filters;
    bool FileMustExist = false;
    std::size_t SelectedFilter = 0; // index
    bool AskOverwrite = true;       // when the file to save to exists
};

// All that is shown on top of the running form. Every call but Show blocks until the user has answered, and
// runs the event loop meanwhile.
class IDialogs {
  public:
    virtual ~IDialogs() = default;

    virtual EModalResult ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) = 0;
    // Starts with the text. Nothing when the user cancels.
    virtual std::optional<std::string> InputBox(const std::string& title, const std::string& prompt,
                                                const std::string& text) = 0;
    std::optional<std::string> InputBox(const std::string& title, const std::string& prompt) {
        return InputBox(title, prompt, {});
    }
    virtual std::optional<std::filesystem::path> OpenFile(const TFileDialog& dialog) = 0;
    // One or more files, in the dialog's order; none when the user cancels.
    virtual std::vector<std::filesystem::path> OpenFiles(const TFileDialog& dialog) = 0;
    // filter: index of the one that the user left the dialog with.
    virtual std::optional<std::filesystem::path> SaveFile(const TFileDialog& dialog, std::size_t& filter) = 0;
    std::optional<std::filesystem::path> SaveFile(const TFileDialog& dialog) {
        std::size_t filter = 0;
        return SaveFile(dialog, filter);
    }

    // Runs the form's OnShow, then blocks until its ModalResult is set or it is closed (Cancel).
    virtual EModalResult ShowModal(TForm& form) = 0;
    virtual void Show(TForm& form) = 0;
    // Opens the menu at the mouse.
    virtual void Popup(TPopupMenu& menu) = 0;
    // Something that the user has to answer first is on the screen.
    virtual bool IsModalOpen() const = 0;
    virtual void SetWaitCursor(bool wait) = 0;
    // Height of the screen's work area in pixels.
    virtual int WorkAreaHeight() const = 0;

    void ShowMessage(const std::string& text) { ShowMessageBox(EMessageKind::Plain, text, EButtons::Ok); }
};

} // namespace tidewell

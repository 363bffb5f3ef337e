#pragma once

#include "core/controls/Control.h"
#include "core/ports/IDialogs.h"
#include "desktop/QtApplication.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>

class QMenu;

namespace tidewell {

// Message boxes, file dialogs and the views of the forms. A view is made when its form is first shown, and
// lives until DestroyViews or the end of this object.
class TQtDialogs : public IDialogs {
  public:
    using TMakeView = std::function<std::unique_ptr<QWidget>()>;

    explicit TQtDialogs(TQtApplication& application);
    ~TQtDialogs() override;
    TQtDialogs(const TQtDialogs&) = delete;
    TQtDialogs& operator=(const TQtDialogs&) = delete;

    void RegisterView(const TForm& form, TMakeView make);
    // For a popup that draws its entries itself; it gets an empty menu each time that it opens.
    void RegisterPopup(const TPopupMenu& popup, std::function<void(QMenu&)> fill);
    // nullptr if the form was not shown yet.
    QWidget* FindView(const TForm& form) const;

    // Before the forms that they show go; the latest first.
    void DestroyViews();

    // Answers every open dialog as its frame would, and every later one before it opens; the text of a
    // message then goes to standard error.
    void CancelAll();
    // Asks the user again.
    void EndCancelAll() { Cancelling = false; }

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
    bool IsModalOpen() const override;
    void SetWaitCursor(bool wait) override;
    int WorkAreaHeight() const override;

  private:
    struct TEntry {
        TMakeView Make;
        std::unique_ptr<QWidget> View;
    };
    QWidget& ViewOf(const TForm& form); // throws TError if none is registered
    QWidget* TopWindow() const;         // what a dialog belongs on; may be nullptr
    void RunModal(TForm& form);
    enum class EFileMode { Open, OpenMany, Save };
    std::vector<std::filesystem::path> RunFileDialog(const TFileDialog& dialog, EFileMode mode);
    std::vector<std::filesystem::path> RunFileDialog(const TFileDialog& dialog, EFileMode mode,
                                                     std::size_t& filter);

    TQtApplication& Application;
    std::map<const TForm*, TEntry> Views;
    std::map<const TPopupMenu*, TEvent<QMenu&>> Popups;
    std::vector<const TForm*> Made; // in order of making
    bool Cancelling = false;
    QPointer<QWidget> Brought; // to the front by Show, but not active yet
    QObject Guard;
    int Waits = 0; // calls of SetWaitCursor that are not taken back
};

} // namespace tidewell

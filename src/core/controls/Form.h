#pragma once

#include "core/controls/Control.h"
#include "core/ports/IDialogs.h"

#include <string>
#include <utility>

namespace tidewell {

enum class EKey { Other, Escape, Return, F1, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12 };
// As a menu entry tells it, "F1"; empty for a key that no entry has.
std::string ShortCutText(EKey key);

// A window. Its Name is the class name without the "T". A form starts hidden; showing and hiding it is the
// dialogs port's work, which keeps Visible in step.
class TForm : public TCaptionControl, public TControls {
  public:
    explicit TForm(std::string name, std::string caption = {})
        : TCaptionControl(std::move(name), std::move(caption)) {
        SetVisible(false);
    }

    EModalResult ModalResult() const { return Result; }
    // Any result but None ends ShowModal.
    void SetModalResult(EModalResult result) { Assign(Result, result); }

    // Ends the form in the ordinary way, as its frame does: OnCloseQuery may refuse, OnClose runs, the form
    // hides. Nothing happens when it is hidden or already closing.
    void Close();
    // Hides the form without closing it.
    void Hide() { SetVisible(false); }

    int ClientWidth() const { return Width; } // pixels
    int ClientHeight() const { return Height; }
    // The view tells each new size; the form's own wish is shown by the view in turn.
    void SetClientSize(int width, int height);

    // For the dialogs port: makes the form visible with no result, and runs OnShow.
    void Open();

    TEvent<> OnShow;
    TEvent<bool&> OnCloseQuery; // set to false to stay open
    TEvent<> OnClose;
    TEvent<> OnResize;
    TEvent<EKey, bool&> OnKeyDown; // before the control that has the focus; set true to keep the key from it

  private:
    EModalResult Result = EModalResult::None;
    bool Closing = false;
    int Width = 0;
    int Height = 0;
};

} // namespace tidewell

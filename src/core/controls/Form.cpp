#include "core/controls/Form.h"

#include "core/AtExit.h"

namespace tidewell {

TControls::TControls(TForm& form) : Form(&form) {}

std::string ShortCutText(EKey key) {
    if (key == EKey::Escape)
        return "Esc";
    return key < EKey::F1 ? "" : "F" + std::to_string(static_cast<int>(key) - static_cast<int>(EKey::F1) + 1);
}

void TForm::Open() {
    Result = EModalResult::None;
    SetVisible(true);
    OnShow();
}

void TForm::Close() {
    if (!Visible() || Closing)
        return;
    bool mayClose = true;
    OnCloseQuery(mayClose);
    if (!mayClose)
        return;
    const TFlagged flagged(Closing);
    OnClose();
    if (Result == EModalResult::None)
        Result = EModalResult::Cancel;
    SetVisible(false);
}

void TForm::SetClientSize(int width, int height) {
    if (width == Width && height == Height)
        return;
    Width = width;
    Height = height;
    Changed.Emit();
    OnResize();
}

} // namespace tidewell

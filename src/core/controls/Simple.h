#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"

#include <optional>
#include <string>
#include <utility>

namespace tidewell {

class TLabel : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
};

// A picture, as the bytes of its file.
class TImage : public TControl {
  public:
    using TControl::TControl;
    const std::string& Bytes() const { return Content; }
    void SetBytes(std::string bytes) { Assign(Content, std::move(bytes)); }

  private:
    std::string Content;
};

// A panel is shown or hidden with all that lies on it.
class TPanel : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
};

class TButton : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
    TEvent<> OnClick;
    // What a click by the user does: nothing while the button is hidden or disabled.
    void Click() const {
        if (Visible() && Enabled())
            OnClick();
    }
    // Background; none for the platform's own.
    std::optional<TColor> Color() const { return Background; }
    void SetColor(std::optional<TColor> color) { Assign(Background, color); }

  private:
    std::optional<TColor> Background;
};

class TCheckBox : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
    bool Checked() const { return IsChecked; }
    void SetChecked(bool checked) { Assign(IsChecked, checked); }
    TEvent<> OnClick;

  private:
    bool IsChecked = false;
};

class TEdit : public TControl {
  public:
    using TControl::TControl;
    const std::string& Text() const { return Content; }
    // From the form's code: OnChange does not run.
    void SetText(const std::string& text) { Assign(Content, text); }
    // What typing does.
    void Enter(const std::string& text) {
        SetText(text);
        OnChange();
    }
    // Shows the text as '*'.
    bool Masked() const { return IsMasked; }
    void SetMasked(bool masked) { Assign(IsMasked, masked); }
    bool ReadOnly() const { return IsReadOnly; }
    void SetReadOnly(bool readOnly) { Assign(IsReadOnly, readOnly); }
    int MaxLength() const { return Limit; } // 0: no limit
    void SetMaxLength(int limit) { Assign(Limit, limit); }
    TEvent<> OnChange;
    TEvent<> OnReturn; // the Enter key in this field
    // Asks the view to select all of the text, or to put the caret at its end.
    TSignal<> SelectAllRequested;
    TSignal<> CaretAtEndRequested;

  private:
    std::string Content;
    bool IsMasked = false;
    bool IsReadOnly = false;
    int Limit = 0;
};

class TProgressBar : public TControl {
  public:
    using TControl::TControl;
    int Max() const { return Maximum; }
    void SetMax(int maximum) { Assign(Maximum, maximum); }
    int Position() const { return Current; }
    void SetPosition(int position) { Assign(Current, position); }

  private:
    int Maximum = 100;
    int Current = 0;
};

// An indicator lamp: dark while off, else in its colour.
class TALed : public TControl {
  public:
    using TControl::TControl;
    bool Value() const { return IsOn; }
    void SetValue(bool on) { Assign(IsOn, on); }
    TColor TrueColor() const { return OnColor; }
    void SetTrueColor(TColor color) { Assign(OnColor, color); }

    static constexpr TColor Green{0x0000FF00};
    static constexpr TColor Red{0x000000FF};

  private:
    bool IsOn = false;
    TColor OnColor = Green;
};

} // namespace tidewell

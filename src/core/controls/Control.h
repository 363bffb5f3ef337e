#pragma once

#include "core/controls/Signal.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {

// A handler that a form gives to one of its controls; an unset one does nothing.
template <class... TArgs>
class TEvent {
  public:
    TEvent& operator=(std::function<void(TArgs...)> handler) {
        Handler = std::move(handler);
        return *this;
    }
    void operator()(TArgs... args) const {
        if (Handler)
            Handler(args...);
    }
    explicit operator bool() const { return static_cast<bool>(Handler); }

  private:
    std::function<void(TArgs...)> Handler;
};

class TControl;
class TForm;

// What controls lie on: a form, or a part of one. A form knows all that lie on it and its parts, in the order
// of their making, for whoever asks for one by its name, or for all.
class TControls {
  public:
    TControls() = default;           // a form
    explicit TControls(TForm& form); // a part of it
    TControls(const TControls&) = delete;
    TControls& operator=(const TControls&) = delete;

    const std::vector<TControl*>& Controls() const { return Form->List; }
    TControl* FindControl(std::string_view name) const; // null if none bears it

  private:
    friend class TControl;
    TControls* Form = this;
    std::vector<TControl*> List;
};

// What every control of a screen model has. Setters of one value emit Changed only if it differs; those that
// change rows always do.
class TControl {
  public:
    // Lies on no form.
    explicit TControl(std::string name) : ControlName(std::move(name)) {}
    // The form must outlive it.
    TControl(TControls& form, std::string name) : ControlName(std::move(name)), Form(form.Form) {
        Form->List.push_back(this);
    }
    virtual ~TControl() {
        if (Form)
            std::erase(Form->List, this);
    }
    TControl(const TControl&) = delete;
    TControl& operator=(const TControl&) = delete;

    const std::string& Name() const { return ControlName; }

    bool Visible() const { return IsVisible; }
    void SetVisible(bool visible) { Assign(IsVisible, visible); }
    bool Enabled() const { return IsEnabled; }
    void SetEnabled(bool enabled) { Assign(IsEnabled, enabled); }
    const std::string& Hint() const { return HintText; }
    void SetHint(const std::string& hint) { Assign(HintText, hint); }

    // Asks the view to paint anew what it reads while painting.
    void Repaint() { Changed.Emit(); }
    // Asks the view to give this control the keyboard.
    void SetFocus() { FocusRequested.Emit(); }

    TSignal<> Changed;
    TSignal<> FocusRequested;

  protected:
    template <class T>
    void Assign(T& field, T value) {
        if (field != value) {
            field = std::move(value);
            Changed.Emit();
        }
    }

  private:
    std::string ControlName;
    TControls* Form = nullptr;
    bool IsVisible = true;
    bool IsEnabled = true;
    std::string HintText;
};

inline TControl* TControls::FindControl(std::string_view name) const {
    for (TControl* control : Controls())
        if (control->Name() == name)
            return control;
    return nullptr;
}

// A control with a caption.
class TCaptionControl : public TControl {
  public:
    explicit TCaptionControl(std::string name, std::string caption = {})
        : TControl(std::move(name)), CaptionText(std::move(caption)) {}
    TCaptionControl(TControls& form, std::string name, std::string caption = {})
        : TControl(form, std::move(name)), CaptionText(std::move(caption)) {}
    const std::string& Caption() const { return CaptionText; }
    void SetCaption(const std::string& caption) { Assign(CaptionText, caption); }

  private:
    std::string CaptionText;
};

} // namespace tidewell

#pragma once

#include "bench/IdlePorts.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

// Answers each dialog with what was set, and keeps what was shown.
class TFixedDialogs : public TNoDialogs {
  public:
    EModalResult YesOrNo = EModalResult::Yes; // all other boxes are answered "Ok"
    std::optional<std::filesystem::path> Opened, Saved;
    std::vector<std::filesystem::path> OpenedMany;
    std::function<void(TPopupMenu&)> OnPopup;

    std::vector<std::string> Boxes; // their texts
    bool WaitCursor = false;

    EModalResult ShowMessageBox(EMessageKind, const std::string& text, EButtons buttons) override {
        Boxes.push_back(text);
        return buttons == EButtons::YesNo ? YesOrNo : EModalResult::Ok;
    }
    std::optional<std::filesystem::path> OpenFile(const TFileDialog&) override { return Opened; }
    std::vector<std::filesystem::path> OpenFiles(const TFileDialog&) override { return OpenedMany; }
    std::optional<std::filesystem::path> SaveFile(const TFileDialog&, std::size_t&) override { return Saved; }
    void Popup(TPopupMenu& menu) override {
        if (OnPopup)
            OnPopup(menu);
    }
    void SetWaitCursor(bool wait) override { WaitCursor = wait; }
};

} // namespace tidewell::test

#pragma once

#include "core/controls/Color.h"
#include "core/controls/Control.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

// A control that holds rows of text, of which one may be selected.
class TItemsControl : public TCaptionControl {
  public:
    using TCaptionControl::TCaptionControl;
    const std::vector<std::string>& Items() const { return Rows; }
    void SetItems(std::vector<std::string> rows) {
        Rows = std::move(rows);
        Selected = -1;
        Changed.Emit();
    }
    void Add(const std::string& row) {
        Rows.push_back(row);
        Changed.Emit();
    }
    void Clear() { SetItems({}); }
    int ItemIndex() const { return Selected; } // -1: none
    void SetItemIndex(int index) { Assign(Selected, index); }
    // What a click on a row does.
    void ClickItem(int index) {
        SetItemIndex(index);
        OnClick();
    }
    TEvent<> OnClick;

  private:
    std::vector<std::string> Rows;
    int Selected = -1;
};

class TListBox : public TItemsControl {
  public:
    using TItemsControl::TItemsControl;
};

class TComboBox : public TItemsControl {
  public:
    using TItemsControl::TItemsControl;
};

class TRadioGroup : public TItemsControl {
  public:
    using TItemsControl::TItemsControl;
};

// Rows of text, each in a colour of its own. While an update is held back the view shows the rows as they
// were.
class TColorList : public TControl {
  public:
    struct TRow {
        std::string Caption;
        TColor Color;
    };
    using TControl::TControl;
    const std::vector<TRow>& Rows() const { return Entries; }
    void Clear() {
        Entries.clear();
        Tell();
    }
    void Add(TRow row) {
        Entries.push_back(std::move(row));
        Tell();
    }
    void SetRow(std::size_t index, TRow row) { // throws std::out_of_range
        Entries.at(index) = std::move(row);
        Tell();
    }
    bool Updating() const { return Held > 0; }
    void BeginUpdate() { ++Held; }
    void EndUpdate() {
        if (--Held == 0)
            Changed.Emit();
    }
    TEvent<> OnClick;

  private:
    void Tell() {
        if (Held == 0)
            Changed.Emit();
    }
    std::vector<TRow> Entries;
    int Held = 0;
};

// Lines of text, read-only to the user. Appending is cheap: a view follows LineAdded and need not read all
// anew.
class TMemo : public TControl {
  public:
    using TControl::TControl;
    const std::vector<std::string>& Lines() const { return Rows; }
    void Add(const std::string& line) {
        Rows.push_back(line);
        LineAdded.Emit(Rows.back());
    }
    void Clear() {
        Rows.clear();
        Changed.Emit();
    }
    TSignal<const std::string&> LineAdded;
    // Asks the view to show the first line; else it follows what is added.
    TSignal<> TopRequested;

  private:
    std::vector<std::string> Rows;
};

} // namespace tidewell

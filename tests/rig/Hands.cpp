#include "rig/Hands.h"

#include "rig/JourneyText.h"
#include "rig/Test.h"
#include "rig/World.h"

namespace tidewell::test {

namespace {

EKey KeyOf(const std::string& name) {
    for (int key = static_cast<int>(EKey::F1); key <= static_cast<int>(EKey::F12); ++key)
        if (ShortCutText(static_cast<EKey>(key)) == name)
            return static_cast<EKey>(key);
    return name == "Escape" ? EKey::Escape : name == "Return" ? EKey::Return : EKey::Other;
}

void PickNode(TTreeView& tree, int root, int child, bool right) {
    const auto& nodes = tree.Nodes();
    const auto at = static_cast<std::size_t>(root);
    if (at >= nodes.size() || child >= static_cast<int>(nodes[at].Children.size()))
        throw TBadStep("there is no such node");
    tree.SetSelected(TTreeView::TSelection{root, child});
    if (right)
        return tree.OnRightMouseButton();
    tree.OnOtherMouseButton();
    tree.OnClick();
}

void PickCell(TStringGrid& grid, int row, int column) {
    grid.SetSelectedRow(row);
    grid.OnSelectCell(row);
    if (column < 0)
        return;
    const TCellRect cell{0, 0, 100, 20};
    const TCellRect box = grid.BoxRect ? grid.BoxRect(cell) : cell;
    grid.OnClick({column, row, (box.Left + box.Right) / 2, (box.Top + box.Bottom) / 2, cell});
}

} // namespace

std::string Click(TControl& control, bool evenHidden) {
    if ((!control.Visible() && !evenHidden) || !control.Enabled())
        return control.Name() + " is " + (control.Visible() ? "disabled" : "hidden");
    if (const auto* button = dynamic_cast<TButton*>(&control))
        button->OnClick();
    else if (const auto* item = dynamic_cast<TMenuItem*>(&control))
        item->OnClick();
    else if (const auto* mask = dynamic_cast<TMaskEdit*>(&control))
        mask->OnClick();
    else if (const auto* colors = dynamic_cast<TColorList*>(&control))
        colors->OnClick();
    else if (auto* const box = dynamic_cast<TCheckBox*>(&control)) {
        box->SetChecked(!box->Checked());
        box->OnClick();
    } else
        throw TBadStep("nothing to click");
    return {};
}

void Type(TControl& control, const std::string& text) {
    if (auto* const edit = dynamic_cast<TEdit*>(&control))
        edit->Enter(text);
    else if (const auto* grid = dynamic_cast<TStringGrid*>(&control))
        grid->OnKeyPress(text);
    else if (const auto* tree = dynamic_cast<TTreeView*>(&control))
        tree->OnKeyPress(text);
    else if (auto* const mask = dynamic_cast<TMaskEdit*>(&control)) {
        mask->SetText(text);
        mask->OnExit();
    } else
        throw TBadStep("nothing to type into");
}

std::string Press(TControl& control, const std::string& key) {
    bool handled = true;
    if (const auto* form = dynamic_cast<TForm*>(&control)) {
        handled = false;
        form->OnKeyDown(KeyOf(key), handled);
    } else if (const auto* grid = dynamic_cast<TStringGrid*>(&control))
        grid->OnKeyPress(key == "Space" ? " " : "\r");
    else if (const auto* tree = dynamic_cast<TTreeView*>(&control))
        tree->OnKeyPress("\r");
    else if (const auto* edit = dynamic_cast<TEdit*>(&control))
        edit->OnReturn();
    else
        throw TBadStep("no keys there");
    return handled ? "" : "the key is not taken";
}

std::string Pick(TControl& control, const std::vector<std::string>& words) {
    const auto number = [&words](std::size_t index) {
        return index < words.size() ? ToIntegerOr(words[index], -1) : -1;
    };
    const std::string& last = words.back();
    if (auto* const items = dynamic_cast<TItemsControl*>(&control)) {
        if (number(0) >= static_cast<int>(items->Items().size()))
            return "there is no such row";
        items->ClickItem(number(0));
    } else if (auto* const pages = dynamic_cast<TPageControl*>(&control)) {
        for (const TTabSheet& sheet : pages->Pages)
            if (sheet.Name() == last)
                pages->SetActivePage(sheet);
    } else if (auto* const tree = dynamic_cast<TTreeView*>(&control)) {
        PickNode(*tree, number(0), number(1), last == "right");
    } else if (auto* const grid = dynamic_cast<TStringGrid*>(&control)) {
        last == "double" ? grid->OnDblClick(number(0)) : PickCell(*grid, number(0), number(1));
    } else if (auto* const track = dynamic_cast<TTrackBar2*>(&control)) {
        track->SetLowerPosition(number(0));
        track->SetUpperPosition(number(1));
    } else if (auto* const scroll = dynamic_cast<TScrollBar*>(&control)) {
        scroll->Scroll(last == "drag" ? EScrollCode::Track : EScrollCode::End, number(0));
    } else {
        throw TBadStep("nothing to pick");
    }
    return {};
}

} // namespace tidewell::test

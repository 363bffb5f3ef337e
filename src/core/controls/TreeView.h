#pragma once

#include "core/controls/Control.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

// A tree of two levels: roots, and children below them.
class TTreeView : public TControl {
  public:
    struct TNode {
        std::string Text;
        std::vector<std::string> Children;
    };
    // Index of a root, and of one of its children; a root itself has child -1.
    struct TSelection {
        int Root = -1;
        int Child = -1;
        friend bool operator==(const TSelection&, const TSelection&) = default;
    };

    using TControl::TControl;

    const std::vector<TNode>& Nodes() const { return Roots; }
    // Drops the selection.
    void SetNodes(std::vector<TNode> nodes) {
        Roots = std::move(nodes);
        Current.reset();
        Changed.Emit();
    }
    std::optional<TSelection> Selected() const { return Current; }
    void SetSelected(std::optional<TSelection> selection) { Assign(Current, selection); }

    TSignal<> ExpandAllRequested;

    TEvent<> OnClick;
    TEvent<const std::string&> OnKeyPress; // "\r" for Enter; no other key comes
    TEvent<> OnRightMouseButton;           // after the view has set the selection as the user left it
    TEvent<> OnOtherMouseButton;

  private:
    std::vector<TNode> Roots;
    std::optional<TSelection> Current;
};

} // namespace tidewell

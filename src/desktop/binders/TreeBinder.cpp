#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QTreeWidget>

namespace tidewell {

namespace {

class TTreeBinding : public QObject {
  public:
    TTreeBinding(QTreeWidget& view, TTreeView& tree, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), Tree(tree), Dialogs(dialogs) {
        FilterEvents(
            View, *this, [this](const QEvent& event) { return ViewEvent(event); });
        FilterEvents(*View.viewport(), *this, [this](const QEvent& event) { return MouseEvent(event); });
        // Not the current item, which moves to the first one when the view just gets the keyboard.
        connect(&View, &QTreeWidget::itemSelectionChanged, this, [this] { TakeSelection(); });
    }

    void Sync() {
        Syncing = true;
        if (!SameNodes())
            Fill();
        View.setCurrentItem(ItemOf(Tree.Selected()));
        Syncing = false;
    }

  private:
    bool ViewEvent(const QEvent& event) {
        if (IsEnter(event)) {
            RunGuarded(Dialogs, [this] { Tree.OnKeyPress("\r"); });
            return true;
        }
        return event.type() == QEvent::ContextMenu && MenuEvent(event);
    }

    bool MouseEvent(const QEvent& event) {
        const auto button = [&event] { return static_cast<const QMouseEvent&>(event).button(); };
        switch (event.type()) {
        case QEvent::MouseButtonPress:
            if (button() == Qt::RightButton) {
                RunGuarded(Dialogs, [this] { Tree.OnRightMouseButton(); });
                return true;
            }
            RunGuarded(Dialogs, [this] { Tree.OnOtherMouseButton(); });
            return false;
        case QEvent::MouseButtonRelease:
            if (button() == Qt::LeftButton)
                RunGuarded(Dialogs, [this] { Tree.OnClick(); });
            return false;
        case QEvent::ContextMenu:
            return MenuEvent(event);
        default:
            return false;
        }
    }

    bool MenuEvent(const QEvent& event) {
        if (static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard)
            RunGuarded(Dialogs, [this] { Tree.OnRightMouseButton(); });
        return true;
    }

    bool SameNodes() const {
        const auto& nodes = Tree.Nodes();
        if (nodes.size() != Shown.size())
            return false;
        for (std::size_t i = 0; i < nodes.size(); ++i)
            if (nodes[i].Text != Shown[i].Text || nodes[i].Children != Shown[i].Children)
                return false;
        return true;
    }

    void Fill() {
        Shown = Tree.Nodes();
        View.clear();
        for (const auto& node : Shown) {
            auto& root = NewChild<QTreeWidgetItem>(View);
            root.setText(0, ToQt(node.Text));
            for (const auto& text : node.Children)
                NewChild<QTreeWidgetItem>(root).setText(0, ToQt(text));
        }
        View.expandAll();
    }

    QTreeWidgetItem* ItemOf(const std::optional<TTreeView::TSelection>& selection) const {
        QTreeWidgetItem* root = selection ? View.topLevelItem(selection->Root) : nullptr;
        return root != nullptr && selection->Child >= 0 ? root->child(selection->Child) : root;
    }

    void TakeSelection() {
        if (Syncing)
            return;
        const QModelIndexList selected = View.selectionModel()->selectedRows();
        const QModelIndex current = selected.isEmpty() ? QModelIndex() : selected.constFirst();
        std::optional<TTreeView::TSelection> selection;
        if (current.parent().isValid())
            selection = {current.parent().row(), current.row()};
        else if (current.isValid())
            selection = {current.row(), -1};
        RunGuarded(Dialogs, [&] { Tree.SetSelected(selection); });
    }

    QTreeWidget& View;
    TTreeView& Tree;
    IDialogs& Dialogs;
    std::vector<TTreeView::TNode> Shown;
    bool Syncing = false;
};

} // namespace

void Bind(QTreeWidget& view, TTreeView& tree, IDialogs& dialogs) {
    BindControl(view, tree);
    view.setHeaderHidden(true);
    view.setColumnCount(1);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto& binding = NewChild<TTreeBinding>(view, view, tree, dialogs);
    KeepInStep(
        view, tree, [&binding] { binding.Sync(); });
    Keep(view, tree.ExpandAllRequested.Connect([&view] { view.expandAll(); }));
}

} // namespace tidewell

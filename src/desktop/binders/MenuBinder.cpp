#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace tidewell {

namespace {

bool IsShown(const TMenuItem& item) {
    if (!item.Visible())
        return false;
    return item.Items.empty() || std::any_of(item.Items.begin(), item.Items.end(),
                                             [](const TMenuItem& below) { return IsShown(below); });
}

void ShowItem(QAction& action, const TMenuItem& item) {
    action.setText(ToQt(item.Caption()));
    action.setSeparator(item.Caption() == "-");
    action.setVisible(IsShown(item));
    action.setEnabled(item.Enabled());
    action.setCheckable(item.Checkable());
    action.setChecked(item.Checkable() && item.Checked());
    action.setStatusTip(ToQt(item.Hint()));
    // Shown beside the caption; it acts only while the menu bar has the keyboard.
    action.setShortcut(QKeySequence::fromString(ToQt(item.ShortCut())));
    action.setShortcutContext(Qt::WidgetShortcut);
}

// A menu is hidden and shown with what is below it, at any depth.
void WatchBelow(QAction& action, const TMenuItem& menu, const TMenuItem& item) {
    for (TMenuItem& below : item.Items) {
        Keep(action, below.Changed.Connect([&action, &menu] { ShowItem(action, menu); }));
        WatchBelow(action, menu, below);
    }
}

// View is the QMenu or QMenuBar that gets the entries.
template <class TView>
void AddItems(TView& view, const std::vector<std::reference_wrapper<TMenuItem>>& items, IDialogs& dialogs) {
    for (TMenuItem& item : items) {
        QAction* action = nullptr;
        if (item.Items.empty()) {
            action = &NewChild<QAction>(view);
            view.addAction(action);
            OnSignal(*action, &QAction::triggered, dialogs, [&item] {
                item.Repaint(); // the form decides whether the check mark moves
                item.Click();
            });
        } else {
            QMenu& menu = NewChild<QMenu>(view);
            menu.setObjectName(ToQt(item.Name()) + QStringLiteral("Menu"));
            AddItems(menu, item.Items, dialogs);
            action = menu.menuAction();
            view.addAction(action);
            WatchBelow(*action, item, item);
        }
        action->setObjectName(ToQt(item.Name()));
        KeepInStep(*action, item, [action, &item] { ShowItem(*action, item); });
    }
}

} // namespace

void Bind(QMenuBar& view, TMainMenu& menu, IDialogs& dialogs) {
    BindControl(view, menu);
    AddItems(view, menu.Items, dialogs);
}

void Bind(QMenu& view, TPopupMenu& menu, IDialogs& dialogs) {
    view.setObjectName(ToQt(menu.Name()));
    AddItems(view, menu.Items, dialogs);
}

} // namespace tidewell

#include "desktop/views/SetupView.h"

#include "desktop/binders/EditBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/PageBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "link/SetupForm.h"
#include "widgets/Child.h"
#include "widgets/RoomyButton.h"
#include "widgets/RoomyRows.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <utility>

namespace tidewell {

TSetupView::TSetupView(TSetupForm& form, const TViewContext& context) : Remote(NewChild<QLineEdit>(*this)) {
    resize(460, 340);
    auto& outer = NewChild<QVBoxLayout>(*this);
    auto& tabs = NewChild<QTabWidget>(*this);
    outer.addWidget(&tabs);
    auto& page = NewChild<QWidget>(tabs);
    auto& pageColumn = NewChild<QVBoxLayout>(page);
    auto& panel = NewChild<QWidget>(page);
    pageColumn.addWidget(&panel);
    auto& column = NewChild<QVBoxLayout>(panel);
    column.setContentsMargins(4, 4, 4, 4);
    const auto addButton = [&](QHBoxLayout& row, TButton& button, int stretch) {
        auto& view = NewChild<TRoomyButton>(panel);
        row.addWidget(&view, stretch);
        BindButton(view, button, context.Dialogs);
        view.setDefault(&button == &form.ButCommOk); // as it looks; the form itself takes Enter
    };

    auto& search = NewLayout<QHBoxLayout>(column);
    search.addWidget(&Remote, 1);
    BindEdit(Remote, form.txtRemote, context.Dialogs);
    addButton(search, form.ButDeviceSearch, 0);
    auto& list = NewChild<QListWidget>(panel);
    list.setItemDelegate(&NewChild<TRoomyRows>(list));
    // The dialog keeps its shape while the list is hidden.
    QSizePolicy policy = list.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    list.setSizePolicy(policy);
    column.addWidget(&list, 1);
    BindListBox(list, form.ListBoxLocalDevices, context.Dialogs);
    BindPicking(list, form.ListBoxLocalDevices, context);
    auto& buttons = NewLayout<QHBoxLayout>(column);
    addButton(buttons, form.butping, 1);
    addButton(buttons, form.ButCommOk, 2);
    addButton(buttons, form.ButCommCancel, 1);

    BindPanel(panel, form.PanelComm);
    tabs.addTab(&page, QString());
    tabs.tabBar()->setFocusPolicy(Qt::NoFocus); // a single page
    BindPages(tabs, form.PageControl1, context.Dialogs);
    BindForm(*this, form, context);
}

// Enter in the list takes its row before it goes to the form, which connects. Once a row is taken, the id can
// be typed on.
void TSetupView::BindPicking(QListWidget& view, TListBox& list, const TViewContext& context) {
    Keep(view,
         context.Application.KeyPreview.Connect([&view, &list, &dialogs = context.Dialogs](
                                                    const QWidget& widget, const QKeyEvent& event, bool&) {
             const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
             if (enter && &widget == &view && view.currentRow() >= 0)
                 RunGuarded(
                     dialogs, [&] { list.ClickItem(view.currentRow()); });
         }));
    Keep(view, list.Changed.Connect([this, &list, shown = false]() mutable {
        if (std::exchange(shown, list.Visible()) && !shown)
            Remote.setFocus();
    }));
}

void TSetupView::showEvent(QShowEvent* event) {
    TDialogView::showEvent(event);
    Remote.setFocus();
}

} // namespace tidewell

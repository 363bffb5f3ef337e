#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {

namespace {

// Shows the rows, and which one is selected, by the view's own functions.
template <class TView>
void BindItems(TView& view, TItemsControl& items, void (TView::*select)(int)) {
    BindControl(view, items);
    KeepInStep(view, items, [&view, &items, select, shown = std::vector<std::string>()]() mutable {
        if (shown != items.Items()) {
            shown = items.Items();
            view.clear();
            for (const std::string& row : shown)
                view.addItem(ToQt(row));
        }
        (view.*select)(items.ItemIndex());
    });
}

void Click(TItemsControl& items, int index) {
    if (index >= 0)
        items.ClickItem(index);
}

// The buttons of a radio group; made anew when the items change.
class TRadioButtons : public QObject {
  public:
    TRadioButtons(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), Group(group), Column(NewChild<QVBoxLayout>(view)) {
        Column.setSpacing(6);
        Column.addStretch(1);
        OnSignal(Buttons, &QButtonGroup::idClicked, dialogs, [this](int id) { Click(Group, id); });
    }

    void Sync() {
        if (Shown != Group.Items())
            Fill();
        // No button is down while no item is selected, which an exclusive group does not allow by itself.
        Buttons.setExclusive(false);
        for (QAbstractButton* button : Buttons.buttons())
            button->setChecked(Buttons.id(button) == Group.ItemIndex());
        Buttons.setExclusive(true);
        // The keyboard enters the group at the selected item.
        const int entry = std::max(0, Group.ItemIndex());
        for (QAbstractButton* button : Buttons.buttons())
            button->setFocusPolicy(Buttons.id(button) == entry ? Qt::StrongFocus : Qt::ClickFocus);
        View.setFocusProxy(Buttons.button(entry));
    }

  private:
    void Fill() {
        Shown = Group.Items();
        for (QAbstractButton* button : Buttons.buttons()) {
            Buttons.removeButton(button);
            button->hide();
            button->deleteLater();
        }
        for (std::size_t i = 0; i < Shown.size(); ++i) {
            auto& button = NewChild<QRadioButton>(View, ToQt(Shown[i]).replace(u'&', QLatin1String("&&")));
            Column.insertWidget(static_cast<int>(i), &button);
            button.show(); // can have the keyboard at once
            Buttons.addButton(&button, static_cast<int>(i));
        }
    }

    QGroupBox& View;
    TRadioGroup& Group;
    QVBoxLayout& Column;
    QButtonGroup Buttons;
    std::vector<std::string> Shown;
};

} // namespace

void Bind(QListWidget& view, TListBox& list, IDialogs& dialogs) {
    BindItems(view, list, &QListWidget::setCurrentRow);
    // The keys pick the current row, which is the first one when Tab comes in.
    FilterEvents(
        view,
        [&](const QEvent& event) {
            if (event.type() == QEvent::FocusIn) {
                const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
                if ((reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) &&
                    view.selectedItems().isEmpty())
                    view.setCurrentRow(0);
            }
            const bool picks =
                IsEnter(event) || (event.type() == QEvent::KeyPress &&
                                   static_cast<const QKeyEvent&>(event).key() == Qt::Key_Space);
            if (picks)
                RunGuarded(
                    dialogs, [&] { Click(list, view.currentRow()); });
            return picks;
        });
    OnSignal(view, &QListWidget::itemClicked, dialogs,
             [&](QListWidgetItem* item) { Click(list, view.row(item)); });
}

void Bind(QComboBox& view, TComboBox& box, IDialogs& dialogs) {
    BindItems(view, box, &QComboBox::setCurrentIndex);
    OnSignal(view, &QComboBox::activated, dialogs, [&box](int index) { Click(box, index); });
}

void Bind(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs) {
    BindControl(view, group);
    auto& buttons = NewChild<TRadioButtons>(view, view, group, dialogs);
    KeepInStep(view, group, [&view, &group, &buttons] {
        view.setTitle(ToQt(group.Caption()));
        buttons.Sync();
    });
}

} // namespace tidewell

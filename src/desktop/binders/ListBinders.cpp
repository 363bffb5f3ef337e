#include "desktop/binders/ListBinders.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {

namespace {

QStringList ToList(const std::vector<std::string>& rows) {
    QStringList list;
    list.reserve(static_cast<qsizetype>(rows.size()));
    for (const auto& row : rows)
        list.append(ToQt(row));
    return list;
}

void Click(TItemsControl& items, int index, IDialogs& dialogs) {
    if (index >= 0)
        RunGuarded(
            dialogs, [&items, index] { items.ClickItem(index); });
}

// The keys that pick the current row of a list, which is the first one when Tab comes in.
class TPickFilter : public QObject {
  public:
    TPickFilter(QListWidget& view, TListBox& list, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), List(list), Dialogs(dialogs) {}

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if ((reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) &&
                View.selectedItems().isEmpty())
                View.setCurrentRow(0);
        }
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
                Click(List, View.currentRow(), Dialogs);
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QListWidget& View;
    TListBox& List;
    IDialogs& Dialogs;
};

// The buttons of a radio group; made anew when the items change.
class TRadioButtons : public QObject {
  public:
    TRadioButtons(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), Group(group), Dialogs(dialogs), Column(NewChild<QVBoxLayout>(view)) {
        Column.setSpacing(6);
        Column.addStretch(1);
        connect(&Buttons, &QButtonGroup::idClicked, this, [this](int id) { Click(Group, id, Dialogs); });
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
    IDialogs& Dialogs;
    QVBoxLayout& Column;
    QButtonGroup Buttons;
    std::vector<std::string> Shown;
};

// A caret at the end would go along to the end of each line, and the view with it, far to the right. Where
// the last line is in view, the new one is.
void AppendLine(QPlainTextEdit& view, const QString& line) {
    QTextCursor caret = view.textCursor();
    const QTextCursor last(view.document()->lastBlock());
    const bool follows = !caret.hasSelection() && caret.block() == last.block();
    const QRect end = view.cursorRect(last);
    const bool seen = end.bottom() >= 0 && end.top() < view.viewport()->height();
    view.appendPlainText(line);
    if (!follows)
        return;
    QScrollBar& horizontal = *view.horizontalScrollBar();
    QScrollBar& vertical = *view.verticalScrollBar();
    const int left = horizontal.value();
    const int top = seen ? vertical.maximum() : vertical.value();
    caret.setPosition(view.document()->lastBlock().position());
    view.setTextCursor(caret);
    horizontal.setValue(left);
    vertical.setValue(top);
}

} // namespace

void BindListBox(QListWidget& view, TListBox& list, IDialogs& dialogs) {
    BindControl(view, list);
    KeepInStep(view, list, [&view, &list, shown = std::vector<std::string>()]() mutable {
        if (shown != list.Items()) {
            shown = list.Items();
            view.clear();
            view.addItems(ToList(shown));
        }
        view.setCurrentRow(list.ItemIndex());
    });
    view.installEventFilter(&NewChild<TPickFilter>(view, view, list, dialogs));
    QObject::connect(
        &view, &QListWidget::itemClicked, &view,
        [&view, &list, &dialogs](QListWidgetItem* item) { Click(list, view.row(item), dialogs); });
}

void BindComboBox(QComboBox& view, TComboBox& box, IDialogs& dialogs) {
    BindControl(view, box);
    KeepInStep(
        view, box,
        [&view, &box, shown = std::vector<std::string>()]() mutable {
            if (shown != box.Items()) {
                shown = box.Items();
                view.clear();
                view.addItems(ToList(shown));
            }
            view.setCurrentIndex(box.ItemIndex());
        });
    QObject::connect(&view, &QComboBox::activated, &view,
                     [&box, &dialogs](int index) { Click(box, index, dialogs); });
}

void BindRadioGroup(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs) {
    BindControl(view, group);
    auto& buttons = NewChild<TRadioButtons>(view, view, group, dialogs);
    KeepInStep(view, group, [&view, &group, &buttons] {
        view.setTitle(ToQt(group.Caption()));
        buttons.Sync();
    });
}

void BindMemo(QPlainTextEdit& view, TMemo& memo) {
    view.setReadOnly(true);
    view.setLineWrapMode(QPlainTextEdit::NoWrap);
    view.setUndoRedoEnabled(false);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    view.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    BindControl(view, memo);
    // Changed also tells of visibility and hints: the lines are read anew only if their number says so.
    auto shown = std::make_shared<std::size_t>(0);
    KeepInStep(view, memo, [&view, &memo, shown] {
        if (*shown == memo.Lines().size())
            return;
        *shown = memo.Lines().size();
        view.setPlainText(ToList(memo.Lines()).join(u'\n'));
    });
    Keep(view, memo.LineAdded.Connect([&view, shown](const std::string& line) {
        ++*shown;
        AppendLine(view, ToQt(line));
    }));
    Keep(view, memo.TopRequested.Connect([&view] { view.moveCursor(QTextCursor::Start); }));
}

} // namespace tidewell

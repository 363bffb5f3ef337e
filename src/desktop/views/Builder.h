#pragma once

#include "desktop/binders/Bind.h"
#include "widgets/Child.h"
#include "widgets/PanelBar.h"
#include "widgets/SimpleViews.h"
#include "widgets/TwoThumbTrackBar.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTableView>
#include <QTreeWidget>

namespace tidewell {

// The widget of a control, where a view names no other.
QLabel& WidgetFor(const TLabel& label);
QLineEdit& WidgetFor(const TEdit& edit);
QLineEdit& WidgetFor(const TMaskEdit& edit);
QCheckBox& WidgetFor(const TCheckBox& checkBox);
QListView& WidgetFor(const TColorList& list);
QListWidget& WidgetFor(const TListBox& list);
QPlainTextEdit& WidgetFor(const TMemo& memo);
QProgressBar& WidgetFor(const TProgressBar& bar);
QTableView& WidgetFor(const TStringGrid& grid);
QTreeWidget& WidgetFor(const TTreeView& tree);
TLedView& WidgetFor(const TALed& led);
TPanelBar& WidgetFor(const TStatusBar& bar);
TRoomyButton& WidgetFor(const TButton& button);
TTwoThumbTrackBar& WidgetFor(const TTrackBar2& bar);

// Makes a control's widget, a TWidget or the usual one, bound.
template <class TWidget = void, class TControl>
auto& NewBound(QWidget& parent, TControl& control, IDialogs& dialogs) {
    if constexpr (std::is_void_v<TWidget>) {
        return NewBound<std::remove_reference_t<decltype(WidgetFor(control))>>(parent, control, dialogs);
    } else {
        auto& view = NewChild<TWidget>(parent);
        Bind(view, control, dialogs);
        return view;
    }
}

// Enter presses the button while it has the keyboard.
QPushButton& PressedByEnter(QPushButton& view);
// The others keep their places while the widget is hidden.
void KeepRoom(QWidget& widget);

class TGrid;

// A row or a column of bound widgets, filled from its first to its last. A view is a list of its controls.
class TBox {
  public:
    using EWay = QBoxLayout::Direction;
    static constexpr EWay Row = QBoxLayout::LeftToRight;
    static constexpr EWay Column = QBoxLayout::TopToBottom;

    // Fills the widget, with the margins of its style.
    TBox(EWay way, QWidget& widget, IDialogs& dialogs)
        : TBox(widget, dialogs, NewChild<QBoxLayout>(widget, way)) {}
    // Lies on the widget, in a layout of it.
    TBox(QWidget& widget, IDialogs& dialogs, QBoxLayout& layout)
        : Parent(widget), Dialogs(dialogs), Layout(layout) {}

    TBox& Margins(int all) { return Margins(all, all, all, all); }
    TBox& Margins(int left, int top, int right, int bottom);
    TBox& Spacing(int pixels);

    template <class TWidget = void, class TControl>
    auto& Add(TControl& control, int stretch = 0, Qt::Alignment alignment = {}) {
        auto& view = NewBound<TWidget>(Parent, control, Dialogs);
        Layout.addWidget(&view, stretch, alignment);
        return view;
    }
    template <class... TControls>
    void AddAll(TControls&... controls) {
        (Add(controls), ...);
    }
    template <class TWidget>
    TWidget& AddWidget(int stretch = 0) {
        auto& widget = NewChild<TWidget>(Parent);
        Layout.addWidget(&widget, stretch);
        return widget;
    }
    void AddStretch(int stretch = 1) { Layout.addStretch(stretch); }
    TBox AddBox(EWay way, int stretch = 0);
    TGrid AddGrid(int stretch = 0);
    // A box on a widget of its own, without margins.
    TBox AddPanel(EWay way, int stretch = 0);
    TBox AddPanel(EWay way, TPanel& panel, int stretch = 0);
    // A widget with a line around it.
    QFrame& AddFrame();

    QWidget& Parent;
    IDialogs& Dialogs;
    QBoxLayout& Layout;
};

// Adds the one line of a page that has nothing to show yet.
void AddEmptyLine(TBox& column, TLabel& label);

// Bound widgets in rows and columns.
class TGrid {
  public:
    // Fills the widget, with the margins of its style.
    TGrid(QWidget& widget, IDialogs& dialogs) : TGrid(widget, dialogs, NewChild<QGridLayout>(widget)) {}
    // Lies on the widget, in a layout of it.
    TGrid(QWidget& widget, IDialogs& dialogs, QGridLayout& layout)
        : Parent(widget), Dialogs(dialogs), Layout(layout) {}

    template <class TWidget = void, class TControl>
    auto& Add(TControl& control, int row, int column, int columns = 1, Qt::Alignment alignment = {}) {
        auto& view = NewBound<TWidget>(Parent, control, Dialogs);
        Layout.addWidget(&view, row, column, 1, columns, alignment);
        return view;
    }
    // A label, and beside it what it names.
    template <class TEditControl>
    QLineEdit& AddField(TLabel& label, TEditControl& edit, int row) {
        const QLabel& text = Add(label, row, 0);
        QLineEdit& field = Add(edit, row, 1);
        field.setAccessibleName(text.text());
        return field;
    }

    QWidget& Parent;
    IDialogs& Dialogs;
    QGridLayout& Layout;
};

} // namespace tidewell

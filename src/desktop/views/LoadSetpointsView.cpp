#include "desktop/views/LoadSetpointsView.h"

#include "desktop/binders/GridBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/SizeBinder.h"
#include "setpoints/LoadSetpointToDevice.h"
#include "widgets/Child.h"
#include "widgets/ElidedLabel.h"
#include "widgets/RoomyButton.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int margin = 12; // pixels, here and below
constexpr int spacing = 8;
constexpr int barWidth = 240;

// The others keep their places while the widget is hidden.
void KeepRoom(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

} // namespace

TLoadSetpointsView::TLoadSetpointsView(TLoadSetpoints& form, const TViewContext& context)
    : TDialogView(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint), Form(form),
      Context(context), Column(NewChild<QVBoxLayout>(*this)), Grid(NewChild<QTableView>(*this)),
      Progress(NewChild<QWidget>(*this)) {
    Column.setContentsMargins(margin, margin, margin, margin);
    Column.setSpacing(spacing);
    AddButtons();
    AddLists();
    AddProgress();
    BindForm(*this, Form, Context);
    Keep(*this, Form.ResultList.Changed.Connect([this] {
        PaintNow(*this);
        if (!Form.ResultList.Visible())
            Grid.setFocus();
    }));
    Keep(*this, Form.progresslabel.Changed.Connect([this] { PaintNow(Progress); }));
}

void TLoadSetpointsView::AddButtons() {
    auto& panel = NewChild<QWidget>(*this);
    Column.addWidget(&panel);
    auto& row = NewChild<QHBoxLayout>(panel);
    row.setContentsMargins(0, 0, 0, 0);
    row.setSpacing(spacing);
    AddButton(row, Form.ButcheckAll);
    AddButton(row, Form.ButClearAll);
    auto& selected = NewChild<QLabel>(panel);
    row.addWidget(&selected, 1);
    BindLabel(selected, Form.LabSelected);
    AddButton(row, Form.ButWriteSetpoints);
    AddButton(row, Form.ButCancel);
    KeepRoom(panel);
    BindPanel(panel, Form.ButPanel);
}

void TLoadSetpointsView::AddLists() {
    auto& place = NewLayout<QGridLayout>(Column, 1);
    auto& results = NewChild<QListView>(*this);
    place.addWidget(&Grid, 0, 0);
    place.addWidget(&results, 0, 0);
    Grid.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    BindGrid(Grid, Form.setpointgrid, Context.Dialogs);
    BindColorList(results, Form.ResultList, Context.Dialogs);
    OnNewSize(*Grid.viewport(), Context, [this] { Form.SetpointGridResized(Grid.viewport()->width()); });
}

void TLoadSetpointsView::AddProgress() {
    Column.addWidget(&Progress);
    auto& rows = NewChild<QGridLayout>(Progress);
    rows.setContentsMargins(0, 0, 0, 0);
    rows.setHorizontalSpacing(spacing);
    rows.setColumnStretch(0, 1);
    auto& label = NewChild<TElidedLabel>(Progress);
    auto& hint = NewChild<TElidedLabel>(Progress);
    auto& bar = NewChild<QProgressBar>(Progress);
    auto& readBack = NewChild<TElidedLabel>(Progress);
    auto& stop = NewChild<TRoomyButton>(Progress);
    bar.setFixedWidth(barWidth);
    rows.addWidget(&label, 0, 0);
    rows.addWidget(&hint, 0, 0); // the two take turns
    rows.addWidget(&bar, 0, 1);
    rows.addWidget(&readBack, 1, 0);
    rows.addWidget(&stop, 1, 1, Qt::AlignRight);
    KeepRoom(label);
    KeepRoom(bar);
    BindLabel(label, Form.progresslabel);
    BindLabel(hint, Form.LabHint);
    BindProgressBar(bar, Form.ProgressBar);
    BindLabel(readBack, Form.LabReadBack);
    BindButton(stop, Form.ButEndReadBack, Context.Dialogs);
    BindPanel(Progress, Form.showpanel);
}

void TLoadSetpointsView::AddButton(QBoxLayout& row, TButton& button) {
    auto& view = NewChild<TRoomyButton>(*row.parentWidget());
    row.addWidget(&view);
    BindButton(view, button, Context.Dialogs);
}

void TLoadSetpointsView::PaintNow(QWidget& part) {
    if (!isVisible() || Form.ButPanel.Visible())
        return;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    part.repaint();
}

// Enter presses the button that has the keyboard, and no other one.
void TLoadSetpointsView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        return TDialogView::keyPressEvent(event);
    auto* const button = qobject_cast<QPushButton*>(focusWidget());
    if (button != nullptr && !event->isAutoRepeat())
        button->click();
}

void TLoadSetpointsView::showEvent(QShowEvent* event) {
    TDialogView::showEvent(event);
    Grid.setFocus();
    if (const QScreen* const where = screen()) {
        QRect frame = frameGeometry();
        frame.moveCenter(where->availableGeometry().center());
        move(frame.topLeft());
    }
}

} // namespace tidewell

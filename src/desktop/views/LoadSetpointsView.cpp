#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "setpoints/LoadSetpointToDevice.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace tidewell {

namespace {

constexpr int margin = 12; // pixels, here and below
constexpr int spacing = 8;
constexpr int barWidth = 240;

void AddButtons(TBox& column, TLoadSetpoints& form) {
    TBox row = column.AddPanel(TBox::Row, form.ButPanel).Spacing(spacing);
    row.AddAll(form.ButcheckAll, form.ButClearAll);
    row.Add(form.LabSelected, 1);
    row.AddAll(form.ButWriteSetpoints, form.ButCancel);
    KeepRoom(row.Parent);
}

void AddProgress(TGrid& rows, TLoadSetpoints& form) {
    rows.Layout.setContentsMargins(0, 0, 0, 0);
    rows.Layout.setHorizontalSpacing(spacing);
    rows.Layout.setColumnStretch(0, 1);
    KeepRoom(rows.Add<TElidedLabel>(form.progresslabel, 0, 0));
    rows.Add<TElidedLabel>(form.LabHint, 0, 0); // the two take turns
    QProgressBar& bar = rows.Add(form.ProgressBar, 0, 1);
    bar.setFixedWidth(barWidth);
    KeepRoom(bar);
    rows.Add<TElidedLabel>(form.LabReadBack, 1, 0);
    rows.Add(form.ButEndReadBack, 1, 1, 1, Qt::AlignRight);
}

// Enter presses the button that has the keyboard, and no other one.
void PressFocused(const QWidget& view, const QKeyEvent& event, bool& handled) {
    handled = IsEnter(event);
    auto* const button = qobject_cast<QPushButton*>(view.focusWidget());
    if (handled && button != nullptr && !event.isAutoRepeat())
        button->click();
}

} // namespace

std::unique_ptr<QWidget> ViewOf(TLoadSetpoints& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>(nullptr, plainDialog);
    TBox column = TBox(TBox::Column, *view, context.Dialogs).Margins(margin).Spacing(spacing);
    auto& grid = NewChild<QTableView>(*view); // gets the keyboard before the buttons above it
    auto& progress = NewChild<QWidget>(*view);
    AddButtons(column, form);
    TGrid place = column.AddGrid(1);
    place.Layout.addWidget(&grid, 0, 0);
    place.Add(form.ResultList, 0, 0);
    grid.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    Bind(grid, form.setpointgrid, context.Dialogs);
    OnNewSize(*grid.viewport(), context,
              [&grid, &form] { form.SetpointGridResized(grid.viewport()->width()); });
    column.Layout.addWidget(&progress);
    TGrid rows(progress, context.Dialogs);
    AddProgress(rows, form);
    Bind(progress, form.showpanel, context.Dialogs);

    view->OnShown = [&dialog = *view, &grid] {
        grid.setFocus();
        dialog.Centre();
    };
    view->OnKeyPress = [&dialog = *view](const QKeyEvent& event, bool& handled) {
        PressFocused(dialog, event, handled);
    };
    Bind(*view, form, context);
    const auto paintNow = [&dialog = *view, &form](QWidget& part) {
        if (!dialog.isVisible() || form.ButPanel.Visible())
            return;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        part.repaint();
    };
    Keep(*view, form.ResultList.Changed.Connect([&dialog = *view, &grid, &form, paintNow] {
        paintNow(dialog);
        if (!form.ResultList.Visible())
            grid.setFocus();
    }));
    Keep(*view, form.progresslabel.Changed.Connect([&progress, paintNow] { paintNow(progress); }));
    return view;
}

} // namespace tidewell

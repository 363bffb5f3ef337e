#include "desktop/views/ServicePanels.h"

#include "desktop/binders/EditBinder.h"
#include "desktop/binders/RangeBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "link/FlashDatalog.h"
#include "link/ServiceTools.h"
#include "widgets/Child.h"
#include "widgets/RoomyButton.h"
#include "widgets/TwoThumbTrackBar.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int gap = 10; // pixels, here and below
constexpr int narrowGap = 6;

QFrame& AddFrame(QVBoxLayout& column) {
    auto& frame = NewChild<QFrame>(*column.parentWidget());
    frame.setFrameShape(QFrame::StyledPanel);
    column.addWidget(&frame);
    return frame;
}

QLabel& NewLabel(QWidget& parent, TLabel& label) {
    auto& view = NewChild<QLabel>(parent);
    BindLabel(view, label);
    return view;
}

QPushButton& NewButton(QWidget& parent, TButton& button, const TViewContext& context) {
    auto& view = NewChild<TRoomyButton>(parent);
    BindButton(view, button, context.Dialogs);
    view.setAutoDefault(true);
    return view;
}

QLineEdit& NewMaskEdit(QWidget& parent, TMaskEdit& edit, const QLabel& label, const TViewContext& context) {
    auto& view = NewChild<QLineEdit>(parent);
    BindMaskEdit(view, edit, context.Dialogs);
    view.setFixedWidth(view.fontMetrics().horizontalAdvance(QStringLiteral("T:000S:00M:000")) + 2 * gap);
    view.setAlignment(Qt::AlignCenter);
    view.setAccessibleName(label.text());
    return view;
}

struct TReadField {
    TLabel& Label;
    TEdit& Edit;
};

void AddReadPanel(QVBoxLayout& column, TPanel& panel, TButton& button, const TReadField& first,
                  const TReadField& second, const TViewContext& context) {
    QFrame& frame = AddFrame(column);
    auto& grid = NewChild<QGridLayout>(frame);
    grid.setContentsMargins(gap, gap, gap, gap);
    grid.setColumnStretch(1, 1);
    int row = 0;
    for (const TReadField& field : {first, second}) {
        QLabel& label = NewLabel(frame, field.Label);
        auto& edit = NewChild<QLineEdit>(frame);
        BindEdit(edit, field.Edit, context.Dialogs);
        edit.setAlignment(Qt::AlignRight);
        edit.setAccessibleName(label.text());
        grid.addWidget(&label, row, 0);
        grid.addWidget(&edit, row++, 1);
    }
    grid.addWidget(&NewButton(frame, button, context), row, 0, 1, 2);
    BindPanel(frame, panel);
}

} // namespace

void AddFlashRange(QVBoxLayout& column, TFlashDatalog& flash, const TViewContext& context) {
    QFrame& frame = AddFrame(column);
    auto& rows = NewChild<QVBoxLayout>(frame);
    rows.setContentsMargins(gap, narrowGap, gap, narrowGap);
    rows.setSpacing(narrowGap);
    auto& ends = NewLayout<QHBoxLayout>(rows);
    ends.addWidget(&NewLabel(frame, flash.DT_LabelToday));
    ends.addStretch(1);
    ends.addWidget(&NewLabel(frame, flash.DT_LabelEndDay));
    auto& tracker = NewChild<TTwoThumbTrackBar>(frame);
    tracker.setAccessibleName(QStringLiteral("Range"));
    rows.addWidget(&tracker);
    BindTrackBar2(tracker, flash.DayTracker, context.Dialogs);
    auto& edits = NewLayout<QGridLayout>(rows);
    edits.setVerticalSpacing(narrowGap);
    edits.setColumnStretch(2, 1);
    QLabel& from = NewLabel(frame, flash.DT_LabelFrom);
    edits.addWidget(&from, 0, 0);
    edits.addWidget(&NewMaskEdit(frame, flash.DT_MaskeditStartDate, from, context), 0, 1);
    QLabel& back = NewLabel(frame, flash.DT_LabelTo);
    edits.addWidget(&back, 1, 0);
    edits.addWidget(&NewMaskEdit(frame, flash.DT_MaskeditEndDate, back, context), 1, 1);
    edits.addWidget(&NewButton(frame, flash.DT_GetData, context), 1, 3);
    QLabel& notice = NewLabel(frame, flash.DT_LabelNotice);
    notice.setWordWrap(true);
    rows.addWidget(&notice);
    BindPanel(frame, flash.PanelFDDatalog);
}

void AddReadPanels(QVBoxLayout& column, TServiceTools& tools, const TViewContext& context) {
    AddReadPanel(column, tools.PanelReadFlash, tools.BtnReadFlash,
                 {tools.LabReadAddress, tools.editReadAddress}, {tools.LabReadLength, tools.editReadLength},
                 context);
    AddReadPanel(column, tools.PanelReadEEprom, tools.butGetEepromValues,
                 {tools.LabErrorlogStart, tools.RErrorlogStart},
                 {tools.LabErrorlogLength, tools.RErrorlogLength}, context);
}

} // namespace tidewell

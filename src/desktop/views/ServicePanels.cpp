#include "desktop/views/ServicePanels.h"

#include "desktop/views/Builder.h"
#include "link/FlashDatalog.h"
#include "link/ServiceTools.h"

namespace tidewell {

namespace {

constexpr int gap = 10; // pixels, here and below
constexpr int narrowGap = 6;

void AddDate(TGrid& grid, TLabel& label, TMaskEdit& edit, int row) {
    QLineEdit& view = grid.AddField(label, edit, row);
    view.setFixedWidth(view.fontMetrics().horizontalAdvance(QStringLiteral("T:000S:00M:000")) + 2 * gap);
    view.setAlignment(Qt::AlignCenter);
}

TGrid AddReadPanel(TBox& column, TPanel& panel) {
    QFrame& frame = column.AddFrame();
    Bind(frame, panel, column.Dialogs);
    TGrid grid(frame, column.Dialogs);
    grid.Layout.setContentsMargins(gap, gap, gap, gap);
    grid.Layout.setColumnStretch(1, 1);
    return grid;
}

} // namespace

void AddFlashRange(TBox& column, TFlashDatalog& flash) {
    QFrame& frame = column.AddFrame();
    Bind(frame, flash.PanelFDDatalog, column.Dialogs);
    TBox rows(TBox::Column, frame, column.Dialogs);
    rows.Margins(gap, narrowGap, gap, narrowGap).Spacing(narrowGap);
    TBox ends = rows.AddBox(TBox::Row);
    ends.Add(flash.DT_LabelToday);
    ends.AddStretch();
    ends.Add(flash.DT_LabelEndDay);
    rows.Add(flash.DayTracker).setAccessibleName(QStringLiteral("Range"));
    TGrid edits = rows.AddGrid();
    edits.Layout.setVerticalSpacing(narrowGap);
    edits.Layout.setColumnStretch(2, 1);
    AddDate(edits, flash.DT_LabelFrom, flash.DT_MaskeditStartDate, 0);
    AddDate(edits, flash.DT_LabelTo, flash.DT_MaskeditEndDate, 1);
    PressedByEnter(edits.Add(flash.DT_GetData, 1, 3));
    rows.Add(flash.DT_LabelNotice).setWordWrap(true);
}

void AddReadPanels(TBox& column, TServiceTools& tools) {
    TGrid flash = AddReadPanel(column, tools.PanelReadFlash);
    flash.AddField(tools.LabReadAddress, tools.editReadAddress, 0).setAlignment(Qt::AlignRight);
    flash.AddField(tools.LabReadLength, tools.editReadLength, 1).setAlignment(Qt::AlignRight);
    PressedByEnter(flash.Add(tools.BtnReadFlash, 2, 0, 2));
    TGrid eeprom = AddReadPanel(column, tools.PanelReadEEprom);
    eeprom.AddField(tools.LabErrorlogStart, tools.RErrorlogStart, 0).setAlignment(Qt::AlignRight);
    eeprom.AddField(tools.LabErrorlogLength, tools.RErrorlogLength, 1).setAlignment(Qt::AlignRight);
    PressedByEnter(eeprom.Add(tools.butGetEepromValues, 2, 0, 2));
}

} // namespace tidewell

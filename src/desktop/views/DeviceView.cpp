#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "link/NabtoDevice.h"

#include <algorithm>
#include <vector>

namespace tidewell {

namespace {

// In pixels.
constexpr int initialWidth = 900;
constexpr int initialHeight = 560;
constexpr int gap = 10;
constexpr int narrowGap = 6;
constexpr int actionsWidth = 220;
constexpr int delayWidth = 60;
constexpr int progressWidth = 200;
constexpr int idLength = 12; // digits of a device id

TElidedLabel& ElidedInTheMiddle(TElidedLabel& view) {
    view.SetElideMode(Qt::ElideMiddle);
    return view;
}

// The same state as in the main form's status bar, which this form may cover; it has the controls' names.
void AddLink(TBox& column, TNabtoDevice& form) {
    TBox row = column.AddBox(TBox::Row);
    row.Add(form.LedNabto).setObjectName(QStringLiteral("LinkLed"));
    TElidedLabel& state = row.Add<TElidedLabel>(form.LblNabto, 1);
    ElidedInTheMiddle(state).setObjectName(QStringLiteral("LinkState")); // the id first, what goes on last
    row.Add<TElidedLabel>(form.lblConnectedUser).setObjectName(QStringLiteral("LinkUser"));
}

template <class... TButtons>
void AddButtons(TBox& box, TButtons&... buttons) {
    (PressedByEnter(box.Add(buttons)), ...);
}

// A frame that shows while any of its controls does.
TBox AddGroup(TBox& column, const std::vector<TControl*>& controls) {
    QFrame& frame = column.AddFrame();
    for (TControl* control : controls)
        KeepInStep(frame, *control, [&frame, controls] {
            frame.setVisible(std::ranges::any_of(controls, [](const TControl* c) { return c->Visible(); }));
        });
    return TBox(TBox::Column, frame, column.Dialogs).Margins(gap);
}

void AddStreamDelay(TBox& column, TNabtoDevice& form) {
    TBox row = column.AddBox(TBox::Row);
    const QLabel& label = row.Add(form.LabStreamDelay, 1);
    QLineEdit& edit = row.Add(form.streamDelayEdit);
    edit.setFixedWidth(delayWidth);
    edit.setAlignment(Qt::AlignRight);
    edit.setAccessibleName(label.text());
    row.Add(form.LabStreamDelayUnit);
}

void AddIdentity(TBox& column, TIdentityPanel& identity) {
    auto& panel = column.AddWidget<QWidget>();
    Bind(panel, identity.PanelDevice, column.Dialogs);
    TGrid grid(panel, column.Dialogs);
    grid.Layout.setContentsMargins(0, 0, 0, 0);
    grid.Layout.setColumnStretch(1, 1);
    const auto addText = [&grid](TLabel& label, int row) {
        TElidedLabel& text = ElidedInTheMiddle(grid.Add<TElidedLabel>(label, row, 1));
        text.setMinimumWidth(text.fontMetrics().horizontalAdvance(QString(idLength + 1, u'0')));
    };
    PressedByEnter(grid.Add(identity.btnDeviceID, 0, 0));
    addText(identity.lblDeviceID, 0);
    PressedByEnter(grid.Add(identity.btnCryptoKey, 1, 0));
    addText(identity.lblCryptoKey, 1);
    PressedByEnter(grid.Add(identity.btnUserAccount, 2, 0));
    PressedByEnter(grid.Add(identity.btnSaveInfo, 3, 0));
    addText(identity.LblJson, 3);
}

TGrid AddReadPanel(TBox& column, TPanel& panel) {
    QFrame& frame = column.AddFrame();
    Bind(frame, panel, column.Dialogs);
    TGrid grid(frame, column.Dialogs);
    grid.Layout.setContentsMargins(gap, gap, gap, gap);
    grid.Layout.setColumnStretch(1, 1);
    return grid;
}

// Flash and EEPROM by address.
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

void AddActions(TBox& row, TNabtoDevice& form) {
    auto& scroll = row.AddWidget<TColumnScroll>();
    auto& left = NewChild<QWidget>(scroll);
    left.setMinimumWidth(actionsWidth);
    scroll.setWidget(&left);
    TBox column = TBox(TBox::Column, left, row.Dialogs).Margins(0).Spacing(gap);
    TBox link = AddGroup(column, {&form.btnPing, &form.butChangeDeviceID});
    PressedByEnter(link.Add(form.btnPing)).setDefault(true);
    AddButtons(link, form.butChangeDeviceID);
    TButton& datalog = form.FlashDatalog.ButFlashDatalog;
    TBox service = AddGroup(column, {&form.BtnUpdate, &form.ButErorlog, &datalog, &form.streamDelayEdit});
    AddButtons(service, form.BtnUpdate, form.ButErorlog, datalog);
    AddStreamDelay(service, form);
    TServiceTools& tools = form.ServiceTools;
    TBox development = AddGroup(column, {&tools.ExtendedSystemVersion, &tools.Button1, &tools.BtnWriteFlash});
    AddButtons(development, tools.ExtendedSystemVersion, tools.Button1, tools.BtnWriteFlash);
    AddReadPanels(column, tools);
    TBox account = AddGroup(column, {&form.ButAccount, &form.Identity.PanelDevice});
    AddButtons(account, form.ButAccount);
    AddIdentity(account, form.Identity);
    column.AddStretch();
}

void AddDate(TGrid& grid, TLabel& label, TMaskEdit& edit, int row) {
    QLineEdit& view = grid.AddField(label, edit, row);
    view.setFixedWidth(view.fontMetrics().horizontalAdvance(QStringLiteral("T:000S:00M:000")) + 2 * gap);
    view.setAlignment(Qt::AlignCenter);
}

// The range of the flash datalog: slider, its ends, the edits of its thumbs, the download.
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

// What a firmware update does, above what it says.
void AddUpdateStatus(TBox& column, TUpdateStatus& status) {
    QFrame& frame = column.AddFrame();
    Bind(frame, status.PanelUpdate, column.Dialogs);
    TBox rows = TBox(TBox::Column, frame, column.Dialogs).Margins(gap, narrowGap, gap, narrowGap);
    TBox step = rows.AddBox(TBox::Row).Spacing(gap);
    const QWidget& led = step.Add(status.LedUpdate);
    TElidedLabel& phase = ElidedInTheMiddle(step.Add<TElidedLabel>(status.LabUpdatePhase, 1));
    phase.setFont(Bold(frame.font()));
    TElidedLabel& elapsed = ElidedInTheMiddle(step.Add<TElidedLabel>(status.LabUpdateElapsed));
    elapsed.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QPushButton& stop = PressedByEnter(step.Add(status.ButUpdateStop));
    TBox sent = rows.AddBox(TBox::Row).Spacing(gap);
    sent.Layout.addSpacing(led.sizeHint().width() + gap);
    TElidedLabel& file = ElidedInTheMiddle(sent.Add<TElidedLabel>(status.LabUpdateFile, 2));
    QProgressBar& progress = sent.Add(status.UpdateProgress, 1);
    progress.setMaximumWidth(progressWidth);
    // What stands below does not jump between the steps of an update.
    KeepRoom(file);
    KeepRoom(progress);
    KeepRoom(stop);
}

void AddDebug(TBox& right, TNabtoDevice& form) {
    TBox column = right.AddPanel(TBox::Column, form.Paneldebug, 1).Spacing(gap);
    AddUpdateStatus(column, form.UpdateStatus);
    QPlainTextEdit& memo = column.Add(form.memoDebug, 1);
    memo.setFont(FixedFont());
    memo.setMinimumHeight(2 * memo.fontMetrics().lineSpacing() + gap); // with all panels on a small screen
    memo.setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    memo.setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    TBox buttons = column.AddBox(TBox::Row);
    AddButtons(buttons, form.btnClearLog, form.btnShowReadList, form.ButContUpdate);
    buttons.AddStretch();
}

} // namespace

std::unique_ptr<QWidget> ViewOf(TNabtoDevice& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>(nullptr, Qt::Window);
    TBox outer = TBox(TBox::Column, *view, context.Dialogs).Margins(0).Spacing(0);
    TBox content = outer.AddBox(TBox::Column, 1).Margins(gap).Spacing(gap);
    AddLink(content, form);
    TBox row = content.AddBox(TBox::Row, 1).Spacing(gap);
    AddActions(row, form);
    TBox right = row.AddBox(TBox::Column, 1).Spacing(gap);
    AddFlashRange(right, form.FlashDatalog);
    AddDebug(right, form);
    outer.Add(form.StatusBar);
    form.SetClientSize(initialWidth, initialHeight); // cut to the screen
    Bind(*view, form, context);
    return view;
}

} // namespace tidewell

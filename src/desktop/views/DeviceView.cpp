#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/ServicePanels.h"
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

#include "desktop/views/DeviceView.h"

#include "desktop/binders/EditBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/StatusBarBinder.h"
#include "desktop/views/FixedFont.h"
#include "desktop/views/ServicePanels.h"
#include "link/NabtoDevice.h"
#include "widgets/Child.h"
#include "widgets/ColumnScroll.h"
#include "widgets/ElidedLabel.h"
#include "widgets/LedView.h"
#include "widgets/PanelBar.h"
#include "widgets/RoomyButton.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QVBoxLayout>

#include <algorithm>

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

QFrame& AddFrame(QVBoxLayout& column) {
    auto& frame = NewChild<QFrame>(*column.parentWidget());
    frame.setFrameShape(QFrame::StyledPanel);
    column.addWidget(&frame);
    return frame;
}

} // namespace

TDeviceView::TDeviceView(TNabtoDevice& form, const TViewContext& context)
    : TDialogView(nullptr, Qt::Window), Form(form), Context(context) {
    auto& outer = NewChild<QVBoxLayout>(*this);
    outer.setContentsMargins(0, 0, 0, 0);
    outer.setSpacing(0);
    auto& content = NewLayout<QVBoxLayout>(outer, 1);
    content.setContentsMargins(gap, gap, gap, gap);
    content.setSpacing(gap);
    AddLink(content);
    auto& row = NewLayout<QHBoxLayout>(content, 1);
    row.setSpacing(gap);
    AddActions(row);
    auto& right = NewLayout<QVBoxLayout>(row, 1);
    right.setSpacing(gap);
    AddFlashRange(right, Form.FlashDatalog, Context);
    AddDebug(right);
    auto& bar = NewChild<TPanelBar>(*this);
    outer.addWidget(&bar);
    BindStatusBar(bar, Form.StatusBar);
    Form.SetClientSize(initialWidth, initialHeight); // cut to the screen
    BindForm(*this, Form, Context);
}

// The same state as in the main form's status bar, which this form may cover; it has the controls' names.
void TDeviceView::AddLink(QVBoxLayout& column) {
    auto& row = NewLayout<QHBoxLayout>(column);
    auto& led = NewChild<TLedView>(*this);
    row.addWidget(&led);
    BindLed(led, Form.LedNabto);
    led.setObjectName(QStringLiteral("LinkLed"));
    auto& state = NewChild<TElidedLabel>(*this);
    state.SetElideMode(Qt::ElideMiddle); // the id stands first, what goes on last
    row.addWidget(&state, 1);
    BindLabel(state, Form.LblNabto);
    state.setObjectName(QStringLiteral("LinkState"));
    auto& user = NewChild<TElidedLabel>(*this);
    row.addWidget(&user);
    BindLabel(user, Form.lblConnectedUser);
    user.setObjectName(QStringLiteral("LinkUser"));
}

void TDeviceView::AddActions(QBoxLayout& row) {
    auto& scroll = NewChild<TColumnScroll>(*this);
    row.addWidget(&scroll);
    auto& left = NewChild<QWidget>(scroll);
    left.setMinimumWidth(actionsWidth);
    scroll.setWidget(&left);
    auto& column = NewChild<QVBoxLayout>(left);
    column.setContentsMargins(0, 0, 0, 0);
    column.setSpacing(gap);

    auto& link = AddGroup(column, {&Form.btnPing, &Form.butChangeDeviceID});
    AddButton(link, Form.btnPing);
    AddButton(link, Form.butChangeDeviceID);
    auto& service = AddGroup(column, {&Form.BtnUpdate, &Form.ButErorlog, &Form.FlashDatalog.ButFlashDatalog,
                                      &Form.streamDelayEdit});
    AddButton(service, Form.BtnUpdate);
    AddButton(service, Form.ButErorlog);
    AddButton(service, Form.FlashDatalog.ButFlashDatalog);
    AddStreamDelay(service);
    auto& development = AddGroup(column, {&Form.ServiceTools.ExtendedSystemVersion,
                                          &Form.ServiceTools.Button1, &Form.ServiceTools.BtnWriteFlash});
    AddButton(development, Form.ServiceTools.ExtendedSystemVersion);
    AddButton(development, Form.ServiceTools.Button1);
    AddButton(development, Form.ServiceTools.BtnWriteFlash);
    AddReadPanels(column, Form.ServiceTools, Context);
    auto& account = AddGroup(column, {&Form.ButAccount, &Form.Identity.PanelDevice});
    AddButton(account, Form.ButAccount);
    AddIdentity(account);
    column.addStretch(1);

    auto& ping = *left.findChild<QPushButton*>(QString::fromStdString(Form.btnPing.Name()));
    ping.setDefault(true);
}

// A frame that shows while any of its controls does.
QVBoxLayout& TDeviceView::AddGroup(QVBoxLayout& column, const std::vector<TControl*>& controls) {
    QFrame& frame = AddFrame(column);
    auto& inner = NewChild<QVBoxLayout>(frame);
    inner.setContentsMargins(gap, gap, gap, gap);
    for (TControl* control : controls)
        KeepInStep(frame, *control, [&frame, controls] {
            frame.setVisible(std::ranges::any_of(controls, [](const TControl* c) { return c->Visible(); }));
        });
    return inner;
}

QPushButton& TDeviceView::AddButton(QBoxLayout& layout, TButton& button) {
    auto& view = NewChild<TRoomyButton>(*layout.parentWidget());
    layout.addWidget(&view);
    BindButton(view, button, Context.Dialogs);
    view.setAutoDefault(true);
    return view;
}

void TDeviceView::AddStreamDelay(QVBoxLayout& column) {
    auto& row = NewLayout<QHBoxLayout>(column);
    QWidget& parent = *column.parentWidget();
    auto& label = NewChild<QLabel>(parent);
    auto& edit = NewChild<QLineEdit>(parent);
    auto& unit = NewChild<QLabel>(parent);
    edit.setFixedWidth(delayWidth);
    edit.setAlignment(Qt::AlignRight);
    row.addWidget(&label, 1);
    row.addWidget(&edit);
    row.addWidget(&unit);
    BindLabel(label, Form.LabStreamDelay);
    BindEdit(edit, Form.streamDelayEdit, Context.Dialogs);
    BindLabel(unit, Form.LabStreamDelayUnit);
    edit.setAccessibleName(label.text());
}

void TDeviceView::AddIdentity(QVBoxLayout& column) {
    TIdentityPanel& identity = Form.Identity;
    auto& panel = NewChild<QWidget>(*column.parentWidget());
    column.addWidget(&panel);
    auto& grid = NewChild<QGridLayout>(panel);
    grid.setContentsMargins(0, 0, 0, 0);
    grid.setColumnStretch(1, 1);
    const auto addRow = [&](int row, TButton& button, TLabel* label) {
        auto& view = NewChild<TRoomyButton>(panel);
        grid.addWidget(&view, row, 0);
        BindButton(view, button, Context.Dialogs);
        view.setAutoDefault(true);
        if (label == nullptr)
            return;
        auto& text = NewChild<TElidedLabel>(panel);
        text.SetElideMode(Qt::ElideMiddle);
        text.setMinimumWidth(text.fontMetrics().horizontalAdvance(QString(idLength + 1, u'0')));
        grid.addWidget(&text, row, 1);
        BindLabel(text, *label);
    };
    addRow(0, identity.btnDeviceID, &identity.lblDeviceID);
    addRow(1, identity.btnCryptoKey, &identity.lblCryptoKey);
    addRow(2, identity.btnUserAccount, nullptr);
    addRow(3, identity.btnSaveInfo, &identity.LblJson);
    BindPanel(panel, identity.PanelDevice);
}

// What a firmware update does, above what it says.
void TDeviceView::AddUpdateStatus(QVBoxLayout& column) {
    TUpdateStatus& status = Form.UpdateStatus;
    QFrame& frame = AddFrame(column);
    auto& rows = NewChild<QVBoxLayout>(frame);
    rows.setContentsMargins(gap, narrowGap, gap, narrowGap);
    const auto addLabel = [&](QBoxLayout& row, TLabel& label, int stretch) -> QLabel& {
        auto& view = NewChild<TElidedLabel>(frame);
        view.SetElideMode(Qt::ElideMiddle);
        row.addWidget(&view, stretch);
        BindLabel(view, label);
        return view;
    };
    auto& step = NewLayout<QHBoxLayout>(rows);
    step.setSpacing(gap);
    auto& led = NewChild<TLedView>(frame);
    step.addWidget(&led);
    BindLed(led, status.LedUpdate);
    QFont bold = font();
    bold.setBold(true);
    addLabel(step, status.LabUpdatePhase, 1).setFont(bold);
    addLabel(step, status.LabUpdateElapsed, 0).setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto& stop = AddButton(step, status.ButUpdateStop);
    auto& sent = NewLayout<QHBoxLayout>(rows);
    sent.setSpacing(gap);
    sent.addSpacing(led.sizeHint().width() + gap);
    QWidget& file = addLabel(sent, status.LabUpdateFile, 2);
    auto& progress = NewChild<QProgressBar>(frame);
    sent.addWidget(&progress, 1);
    progress.setMaximumWidth(progressWidth);
    BindProgressBar(progress, status.UpdateProgress);
    // What stands below does not jump between the steps of an update.
    for (QWidget* part : {&file, static_cast<QWidget*>(&progress), static_cast<QWidget*>(&stop)}) {
        QSizePolicy policy = part->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        part->setSizePolicy(policy);
    }
    BindPanel(frame, status.PanelUpdate);
}

void TDeviceView::AddDebug(QBoxLayout& row) {
    auto& panel = NewChild<QWidget>(*this);
    row.addWidget(&panel, 1);
    auto& column = NewChild<QVBoxLayout>(panel);
    column.setContentsMargins(0, 0, 0, 0);
    column.setSpacing(gap);
    AddUpdateStatus(column);
    auto& memo = NewChild<QPlainTextEdit>(panel);
    memo.setFont(FixedFont());
    memo.setMinimumHeight(2 * memo.fontMetrics().lineSpacing() + gap); // with all panels on a small screen
    column.addWidget(&memo, 1);
    BindMemo(memo, Form.memoDebug);
    memo.setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    memo.setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    auto& buttons = NewLayout<QHBoxLayout>(column);
    AddButton(buttons, Form.btnClearLog);
    AddButton(buttons, Form.btnShowReadList);
    AddButton(buttons, Form.ButContUpdate);
    buttons.addStretch(1);
    BindPanel(panel, Form.Paneldebug);
}

} // namespace tidewell

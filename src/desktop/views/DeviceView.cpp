#include "desktop/views/DeviceView.h"

#include "desktop/binders/EditBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/StatusBarBinder.h"
#include "link/NabtoDevice.h"
#include "widgets/Child.h"
#include "widgets/ElidedLabel.h"
#include "widgets/PanelBar.h"
#include "widgets/RoomyButton.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int actionsWidth = 240; // pixels

}

TDeviceView::TDeviceView(TNabtoDevice& form, const TViewContext& context) : Form(form), Context(context) {
    resize(900, 560);
    auto& outer = NewChild<QVBoxLayout>(*this);
    outer.setContentsMargins(0, 0, 0, 0);
    outer.setSpacing(0);
    auto& row = NewLayout<QHBoxLayout>(outer, 1);
    row.setContentsMargins(12, 12, 12, 12);
    row.setSpacing(12);

    auto& left = NewChild<QWidget>(*this);
    left.setFixedWidth(actionsWidth);
    row.addWidget(&left);
    auto& actions = NewChild<QVBoxLayout>(left);
    actions.setContentsMargins(0, 0, 0, 0);
    AddActions(actions);
    AddIdentity(actions);
    AddServicePanels(actions);
    actions.addStretch(1);

    auto& debug = NewChild<QWidget>(*this);
    row.addWidget(&debug, 1);
    auto& output = NewChild<QVBoxLayout>(debug);
    output.setContentsMargins(0, 0, 0, 0);
    AddDebug(output);
    BindPanel(debug, Form.Paneldebug);

    auto& bar = NewChild<TPanelBar>(*this);
    outer.addWidget(&bar);
    BindStatusBar(bar, Form.StatusBar);
    BindForm(*this, Form, Context);
}

void TDeviceView::AddButton(QBoxLayout& layout, TButton& button) {
    auto& view = NewChild<TRoomyButton>(*layout.parentWidget());
    layout.addWidget(&view);
    BindButton(view, button, Context.Dialogs);
}

void TDeviceView::AddActions(QVBoxLayout& column) {
    for (TButton* button :
         {&Form.btnPing, &Form.ExtendedSystemVersion, &Form.butChangeDeviceID, &Form.BtnUpdate,
          &Form.ButErorlog, &Form.ButFlashDatalog, &Form.BtnWriteFlash, &Form.Button1, &Form.ButAccount})
        AddButton(column, *button);
}

void TDeviceView::AddIdentity(QVBoxLayout& column) {
    TIdentityPanel& identity = Form.Identity;
    auto& panel = NewChild<QFrame>(*column.parentWidget());
    panel.setFrameShape(QFrame::StyledPanel);
    column.addWidget(&panel);
    auto& inner = NewChild<QVBoxLayout>(panel);
    const auto addLabel = [&](TLabel& label) {
        auto& view = NewChild<TElidedLabel>(panel);
        inner.addWidget(&view);
        BindLabel(view, label);
    };
    AddButton(inner, identity.btnDeviceID);
    addLabel(identity.lblDeviceID);
    AddButton(inner, identity.btnCryptoKey);
    addLabel(identity.lblCryptoKey);
    AddButton(inner, identity.btnUserAccount);
    AddButton(inner, identity.btnSaveInfo);
    addLabel(identity.LblJson);
    BindPanel(panel, identity.PanelDevice);
}

void TDeviceView::AddServicePanels(QVBoxLayout& column) {
    for (TPanel* panel : {&Form.PanelReadFlash, &Form.PanelReadEEprom}) {
        auto& view = NewChild<QFrame>(*column.parentWidget());
        view.setFrameShape(QFrame::StyledPanel);
        column.addWidget(&view);
        BindPanel(view, *panel);
    }
    auto& flash = NewChild<QFrame>(*column.parentWidget());
    flash.setFrameShape(QFrame::StyledPanel);
    column.addWidget(&flash);
    auto& range = NewChild<QGridLayout>(flash);
    const auto addLabel = [&](TLabel& label, int row, int place) {
        auto& view = NewChild<QLabel>(flash);
        range.addWidget(&view, row, place);
        BindLabel(view, label);
    };
    addLabel(Form.DT_LabelFrom, 0, 0);
    addLabel(Form.DT_LabelToday, 0, 1);
    addLabel(Form.DT_LabelTo, 1, 0);
    addLabel(Form.DT_LabelEndDay, 1, 1);
    auto& get = NewChild<TRoomyButton>(flash);
    range.addWidget(&get, 2, 0, 1, 2);
    BindButton(get, Form.DT_GetData, Context.Dialogs);
    BindPanel(flash, Form.PanelFDDatalog);
}

void TDeviceView::AddDebug(QVBoxLayout& column) {
    QWidget& panel = *column.parentWidget();
    auto& memo = NewChild<QPlainTextEdit>(panel);
    memo.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    column.addWidget(&memo, 1);
    BindMemo(memo, Form.memoDebug);

    auto& row = NewLayout<QHBoxLayout>(column);
    AddButton(row, Form.btnClearLog);
    AddButton(row, Form.ButContUpdate);
    row.addStretch(1);
    auto& label = NewChild<QLabel>(panel);
    auto& edit = NewChild<QLineEdit>(panel);
    auto& unit = NewChild<QLabel>(panel);
    edit.setFixedWidth(60);
    row.addWidget(&label);
    row.addWidget(&edit);
    row.addWidget(&unit);
    BindLabel(label, Form.LabStreamDelay);
    BindEdit(edit, Form.streamDelayEdit, Context.Dialogs);
    BindLabel(unit, Form.LabStreamDelayUnit);
}

} // namespace tidewell

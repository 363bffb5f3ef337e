#include "desktop/views/LogOnView.h"

#include "cloud/NabtoLogOn.h"
#include "desktop/binders/EditBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "widgets/Child.h"
#include "widgets/RoomyButton.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace tidewell {

TLogOnView::TLogOnView(TNabtoLogOn& form, const TViewContext& context)
    : TDialogView(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint) {
    auto& grid = NewChild<QGridLayout>(*this);
    grid.setSizeConstraint(QLayout::SetFixedSize);
    grid.setContentsMargins(20, 20, 20, 16);
    grid.setHorizontalSpacing(12);
    grid.setVerticalSpacing(10);
    const auto addField = [&](int row, TLabel& label, TEdit& edit) {
        auto& text = NewChild<QLabel>(*this);
        auto& field = NewChild<QLineEdit>(*this);
        field.setMinimumWidth(260);
        grid.addWidget(&text, row, 0);
        grid.addWidget(&field, row, 1);
        BindLabel(text, label);
        BindEdit(field, edit, context.Dialogs);
        field.setAccessibleName(text.text());
    };
    addField(0, form.LAbUser, form.EditUser);
    addField(1, form.LabPW, form.EditPW);
    auto& offline = NewChild<QCheckBox>(*this);
    grid.addWidget(&offline, 2, 1);
    BindCheckBox(offline, form.offLineSessionCheckBox, context.Dialogs);

    grid.setRowMinimumHeight(3, 6);
    auto& buttons = NewChild<QWidget>(*this);
    grid.addWidget(&buttons, 4, 0, 1, 2);
    auto& row = NewChild<QHBoxLayout>(buttons);
    row.setContentsMargins(0, 0, 0, 0);
    row.addStretch(1);
    for (TButton* button : {&form.ButSave, &form.ButOk, &form.ButCancel}) {
        auto& view = NewChild<TRoomyButton>(buttons);
        row.addWidget(&view);
        BindButton(view, *button, context.Dialogs);
        view.setAutoDefault(true); // Enter clicks the button that has the focus
        if (button == &form.ButOk)
            view.setDefault(true);
    }
    BindForm(*this, form, context);
}

} // namespace tidewell

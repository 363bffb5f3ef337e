#include "desktop/views/LanguageView.h"

#include "desktop/binders/ListBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "mainform/Languagedialog.h"
#include "widgets/Child.h"
#include "widgets/RoomyButton.h"

#include <QGroupBox>
#include <QScrollArea>
#include <QVBoxLayout>

namespace tidewell {

TLanguageView::TLanguageView(Tlanguagedialog& form, const TViewContext& context)
    : Group(NewChild<QGroupBox>(*this)) {
    resize(Tlanguagedialog::InitialWidth, Tlanguagedialog::InitialHeight);
    auto& column = NewChild<QVBoxLayout>(*this);
    // Many languages scroll.
    auto& scroll = NewChild<QScrollArea>(*this);
    scroll.setFrameShape(QFrame::NoFrame);
    scroll.setWidgetResizable(true);
    scroll.setFocusPolicy(Qt::NoFocus);
    scroll.setWidget(&Group);
    column.addWidget(&scroll, 1);
    auto& button = NewChild<TRoomyButton>(*this);
    column.addWidget(&button, 0, Qt::AlignRight);
    BindRadioGroup(Group, form.langgroup, context.Dialogs);
    BindButton(button, form.Button, context.Dialogs);
    button.setDefault(true);
    BindForm(*this, form, context);
}

void TLanguageView::showEvent(QShowEvent* event) {
    TDialogView::showEvent(event);
    // The form fills the group only after it has become visible.
    QMetaObject::invokeMethod(
        this, [this] { Group.setFocus(Qt::OtherFocusReason); }, Qt::QueuedConnection);
}

} // namespace tidewell

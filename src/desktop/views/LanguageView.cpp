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

TLanguageView::TLanguageView(Tlanguagedialog& form, const TViewContext& context) {
    resize(Tlanguagedialog::InitialWidth, Tlanguagedialog::InitialHeight);
    auto& column = NewChild<QVBoxLayout>(*this);
    // Many languages scroll.
    auto& scroll = NewChild<QScrollArea>(*this);
    scroll.setFrameShape(QFrame::NoFrame);
    scroll.setWidgetResizable(true);
    scroll.setFocusPolicy(Qt::NoFocus);
    auto& group = NewChild<QGroupBox>(scroll);
    scroll.setWidget(&group);
    column.addWidget(&scroll, 1);
    auto& button = NewChild<TRoomyButton>(*this);
    column.addWidget(&button, 0, Qt::AlignRight);
    BindRadioGroup(group, form.langgroup, context.Dialogs);
    BindButton(button, form.Button, context.Dialogs);
    button.setDefault(true);
    BindForm(*this, form, context);
}

} // namespace tidewell

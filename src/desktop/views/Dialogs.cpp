#include "cloud/NabtoLogOn.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "link/SetupForm.h"
#include "mainform/Languagedialog.h"
#include "mainform/Splashscreen.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTabBar>
#include <QTabWidget>

#include <utility>

namespace tidewell {

namespace {

constexpr int footHeight = 34; // of the splash screen, in pixels

// Light or dark, whichever is read better on that part of the picture.
QColor InkFor(const QPixmap& picture, double from) {
    QImage image = picture.toImage();
    if (image.isNull())
        return QGuiApplication::palette().color(QPalette::WindowText);
    const int top = static_cast<int>(image.height() * from);
    image = image.copy(0, top, image.width(), image.height() - top);
    image = image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.pixelColor(0, 0).lightness() > 128 ? QColor(20, 40, 60) : QColor(245, 250, 252);
}

// Enter in the list takes its row before it goes to the form, which connects. Once a row is taken, the id can
// be typed on.
void BindPicking(QListWidget& view, TListBox& list, QLineEdit& id, const TViewContext& context) {
    Keep(view,
         context.Application.KeyPreview.Connect([&view, &list, &dialogs = context.Dialogs](
                                                    const QWidget& widget, const QKeyEvent& event, bool&) {
             if (IsEnter(event) && &widget == &view && view.currentRow() >= 0)
                 RunGuarded(
                     dialogs, [&] { list.ClickItem(view.currentRow()); });
         }));
    Keep(view, list.Changed.Connect([&list, &id, shown = false]() mutable {
        if (std::exchange(shown, list.Visible()) && !shown)
            id.setFocus();
    }));
}

} // namespace

std::unique_ptr<QWidget> ViewOf(TSplashscreen& splash, const TViewContext& context) {
    auto view = std::make_unique<QWidget>(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint);
    view->setFixedSize(TSplashscreen::InitialWidth, TSplashscreen::InitialHeight);
    auto& picture = NewBound<TPictureView>(*view, splash.logo, context.Dialogs);
    picture.setGeometry(view->rect());

    auto& foot = NewChild<QWidget>(*view);
    foot.setGeometry(0, view->height() - footHeight, view->width(), footHeight);
    QPalette ink = foot.palette();
    ink.setColor(QPalette::WindowText,
                 InkFor(picture.Picture(), 1.0 - static_cast<double>(footHeight) / view->height()));
    foot.setPalette(ink);
    QFont font = foot.font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    foot.setFont(font);
    TBox row = TBox(TBox::Row, foot, context.Dialogs).Margins(16, 0, 16, 0);
    row.Add(splash.infostring, 1);
    row.Add(splash.ver_lab);

    if (const QScreen* on = QGuiApplication::primaryScreen())
        view->move(on->geometry().center() - view->rect().center());
    Bind(*view, splash, context);
    return view;
}

std::unique_ptr<QWidget> ViewOf(TNabtoLogOn& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>(nullptr, plainDialog);
    TGrid grid(*view, context.Dialogs);
    grid.Layout.setSizeConstraint(QLayout::SetFixedSize);
    grid.Layout.setContentsMargins(20, 20, 20, 16);
    grid.Layout.setHorizontalSpacing(12);
    grid.Layout.setVerticalSpacing(10);
    grid.AddField(form.LAbUser, form.EditUser, 0).setMinimumWidth(260);
    grid.AddField(form.LabPW, form.EditPW, 1).setMinimumWidth(260);
    grid.Add(form.offLineSessionCheckBox, 2, 1);
    grid.Layout.setRowMinimumHeight(3, 6);
    auto& buttons = NewChild<QWidget>(*view);
    grid.Layout.addWidget(&buttons, 4, 0, 1, 2);
    TBox row = TBox(TBox::Row, buttons, context.Dialogs).Margins(0);
    row.AddStretch();
    PressedByEnter(row.Add(form.ButSave));
    PressedByEnter(row.Add(form.ButOk)).setDefault(true);
    PressedByEnter(row.Add(form.ButCancel));
    Bind(*view, form, context);
    return view;
}

std::unique_ptr<QWidget> ViewOf(Tlanguagedialog& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>();
    view->resize(Tlanguagedialog::InitialWidth, Tlanguagedialog::InitialHeight);
    TBox column(TBox::Column, *view, context.Dialogs);
    auto& group = NewBound<QGroupBox>(*view, form.langgroup, context.Dialogs);
    // Many languages scroll.
    auto& scroll = column.AddWidget<QScrollArea>(1);
    scroll.setFrameShape(QFrame::NoFrame);
    scroll.setWidgetResizable(true);
    scroll.setFocusPolicy(Qt::NoFocus);
    scroll.setWidget(&group);
    column.Add(form.Button, 0, Qt::AlignRight).setDefault(true);
    // The form fills the group only after it has become visible.
    view->OnShown = [&group] {
        const auto focus = [&group] { group.setFocus(Qt::OtherFocusReason); };
        QMetaObject::invokeMethod(&group, focus, Qt::QueuedConnection);
    };
    Bind(*view, form, context);
    return view;
}

std::unique_ptr<QWidget> ViewOf(TSetupForm& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>();
    view->resize(460, 340);
    auto& tabs = TBox(TBox::Column, *view, context.Dialogs).AddWidget<QTabWidget>();
    auto& page = NewChild<QWidget>(tabs);
    TBox column = TBox(TBox::Column, page, context.Dialogs).AddPanel(TBox::Column, form.PanelComm).Margins(4);
    TBox search = column.AddBox(TBox::Row);
    QLineEdit& id = search.Add(form.txtRemote, 1);
    search.Add(form.ButDeviceSearch);
    QListWidget& list = column.Add(form.ListBoxLocalDevices, 1);
    list.setItemDelegate(&NewChild<TRoomyRows>(list));
    KeepRoom(list);
    BindPicking(list, form.ListBoxLocalDevices, id, context);
    TBox buttons = column.AddBox(TBox::Row);
    buttons.Add(form.butping, 1);
    buttons.Add(form.ButCommOk, 2).setDefault(true); // as it looks; the form itself takes Enter
    buttons.Add(form.ButCommCancel, 1);
    tabs.addTab(&page, QString());
    tabs.tabBar()->setFocusPolicy(Qt::NoFocus); // a single page
    Bind(tabs, form.PageControl1, context.Dialogs);
    view->OnShown = [&id] { id.setFocus(); };
    Bind(*view, form, context);
    return view;
}

} // namespace tidewell

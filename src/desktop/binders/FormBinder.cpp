#include "desktop/binders/FormBinder.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <memory>

namespace tidewell {

namespace {

std::optional<EKey> KeyOf(const QKeyEvent& event) {
    if (event.isAutoRepeat() || (event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return std::nullopt;
    const int key = event.key();
    if (key == Qt::Key_Escape)
        return EKey::Escape;
    if (IsEnter(event))
        return EKey::Return;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        return static_cast<EKey>(static_cast<int>(EKey::F1) + key - Qt::Key_F1);
    return std::nullopt;
}

// As far as it is not known before the window is shown.
int TitleHeight(const QWidget& view) {
    const int frame = view.frameSize().height() - view.height();
    return frame > 0 || view.windowFlags().testFlag(Qt::FramelessWindowHint)
               ? frame
               : view.style()->pixelMetric(QStyle::PM_TitleBarHeight);
}

class TFormBinding : public QObject {
  public:
    TFormBinding(QWidget& view, TForm& form, const TViewContext& context, QObject* parent)
        : QObject(parent), View(view), Form(form), Context(context),
          NewSize(context.Hold, [this] { TellSize(); }) {
        View.setObjectName(ToQt(Form.Name()));
        FilterEvents(
            View, *this, [this](QEvent& event) { return ViewEvent(event); });
        Keep(*this,
             Context.Application.KeyPreview.Connect([this](QWidget& widget, QKeyEvent& event, bool& handled) {
                 Preview(widget, event, handled);
             }));
        Keep(*this, Form.Changed.Connect([this] { Sync(); }));
        Keep(*this, Form.FocusRequested.Connect([this] { View.activateWindow(); }));
        Sync();
    }

  private:
    bool ViewEvent(QEvent& event) {
        if (event.type() == QEvent::Resize)
            NewSize.FallDue();
        if (event.type() != QEvent::Close)
            return false;
        RunGuarded(Context.Dialogs, [this] { Form.Close(); });
        event.ignore();
        return true;
    }

    void Sync() {
        const QString title = ToQt(Form.Caption());
        if (View.windowTitle() != title)
            View.setWindowTitle(title);
        View.setEnabled(Form.Enabled());
        const QSize wish(Form.ClientWidth(), Form.ClientHeight());
        if (wish != Known) {
            Known = wish;
            Resize(wish);
        }
        if (View.isVisible() != Form.Visible())
            View.setVisible(Form.Visible());
    }

    // Within the screen, frame included; a side of 0 stays as it is.
    void Resize(QSize wish) {
        if (const QScreen* screen = View.screen()) {
            const QSize room = screen->availableSize();
            const int sides = View.frameSize().width() - View.width();
            wish = wish.boundedTo({room.width() - sides, room.height() - TitleHeight(View)});
        }
        View.resize(wish.width() > 0 ? wish.width() : View.width(),
                    wish.height() > 0 ? wish.height() : View.height());
    }

    void TellSize() {
        Known = View.size();
        RunGuarded(Context.Dialogs, [this] { Form.SetClientSize(Known.width(), Known.height()); });
    }

    void Preview(const QWidget& widget, const QKeyEvent& event, bool& handled) {
        // A menu bar that has the keyboard leaves it by Esc.
        if (handled || widget.window() != &View || qobject_cast<const QMenuBar*>(&widget) != nullptr)
            return;
        const auto key = KeyOf(event);
        if (key && !RunGuarded(Context.Dialogs, [&] { Form.OnKeyDown(*key, handled); }))
            handled = true;
    }

    QWidget& View;
    TForm& Form;
    const TViewContext Context;
    QSize Known{0, 0}; // as the form and the view last agreed
    TDelivery NewSize;
};

} // namespace

void TDialogView::setVisible(bool visible) {
    // The library tells the field that had the keyboard last that it has it again, even if the form is about
    // to give it to another one: both would show a caret.
    if (QWidget* const last = focusWidget(); visible && !isVisible() && last != nullptr)
        last->clearFocus();
    const QWidget* const active = QApplication::activeWindow();
    const QScreen* const on = active != nullptr ? active->screen() : screen();
    if (visible && on != nullptr && !testAttribute(Qt::WA_Moved)) {
        const QRect room = on->availableGeometry();
        const QSize whole = testAttribute(Qt::WA_Resized) ? size().expandedTo(minimumSizeHint()) : sizeHint();
        const QSize spare = room.size() - whole - QSize(0, TitleHeight(*this));
        move(room.topLeft() + QPoint(qMax(spare.width(), 0) / 2, qMax(spare.height(), 0) / 2));
    }
    QDialog::setVisible(visible);
}

void TDialogView::Centre() {
    if (const QScreen* const where = screen()) {
        const QRect room = where->availableGeometry();
        QRect frame = frameGeometry();
        frame.moveCenter(room.center());
        move(std::max(frame.left(), room.left()), std::max(frame.top(), room.top()));
    }
}

void TDialogView::keyPressEvent(QKeyEvent* event) {
    bool handled = false;
    OnKeyPress(*event, handled);
    if (!handled)
        QDialog::keyPressEvent(event);
}

void TDialogView::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    OnShown();
}

void Bind(QWidget& view, TForm& form, const TViewContext& context) {
    NewChild<TFormBinding>(view, view, form, context);
}

void OnNewSize(QWidget& widget, const TViewContext& context, std::function<void()> handler) {
    const auto guarded = [&dialogs = context.Dialogs, handler = std::move(handler)] {
        RunGuarded(dialogs, handler);
    };
    const auto due = std::make_shared<TDelivery>(context.Hold, guarded);
    FilterEvents(widget, [due](const QEvent& event) {
        if (event.type() == QEvent::Resize || event.type() == QEvent::Show)
            due->FallDue();
        return false;
    });
}

} // namespace tidewell

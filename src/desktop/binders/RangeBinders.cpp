#include "desktop/binders/RangeBinders.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"
#include "widgets/TwoThumbTrackBar.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTimer>

namespace tidewell {

namespace {

constexpr QChar missing = u'_';

// In the toolkit's terms "0" is a digit that may be missing.
QString InputMask(const TMaskEdit& edit) {
    QString mask;
    for (const char literal : edit.Places())
        if (literal == '\0')
            mask += u'0';
        else
            mask += QStringLiteral("\\") + QChar::fromLatin1(literal);
    return mask + u';' + missing;
}

bool IsEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

class TMaskFilter : public QObject {
  public:
    TMaskFilter(TMaskEdit& edit, IDialogs& dialogs, QObject* parent)
        : QObject(parent), Edit(edit), Dialogs(dialogs) {}

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            // Once the field has done with the click: what it opens waits for the user.
            QTimer::singleShot(0, this, [this] {
                if (Edit.Enabled()) // clicks on a disabled field come here, too
                    RunGuarded(Dialogs, [this] { Edit.OnClick(); });
            });
        } else if (event->type() == QEvent::KeyPress && IsEnter(*static_cast<QKeyEvent*>(event))) {
            RunGuarded(Dialogs, [this] { Edit.OnExit(); }); // and not the form's default button
            return true;
        } else if (event->type() == QEvent::FocusOut) {
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                RunGuarded(Dialogs, [this] { Edit.OnExit(); });
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    TMaskEdit& Edit;
    IDialogs& Dialogs;
};

} // namespace

void BindTrackBar2(TTwoThumbTrackBar& view, TTrackBar2& bar, IDialogs& dialogs) {
    BindControl(view, bar);
    KeepInStep(
        view, bar,
        [&view, &bar] {
            view.SetRange(bar.Min(), bar.Max());
            view.SetPositions(bar.LowerPosition(), bar.UpperPosition());
            view.SetTickFrequency(bar.Frequency());
            view.SetPageSize(bar.PageSize());
            view.SetThumbColor(
                QColor(bar.ThumbColor().Red(), bar.ThumbColor().Green(), bar.ThumbColor().Blue()));
        });
    view.OnLowerMoved = [&bar, &dialogs](int position) {
        RunGuarded(
            dialogs, [&] { bar.SetLowerPosition(position); });
    };
    view.OnUpperMoved = [&bar, &dialogs](int position) {
        RunGuarded(dialogs, [&] { bar.SetUpperPosition(position); });
    };
}

void BindMaskEdit(QLineEdit& view, TMaskEdit& edit, IDialogs& dialogs) {
    BindControl(view, edit);
    view.setInputMask(InputMask(edit));
    KeepInStep(
        view, edit,
        [&view, &edit] {
            const QString text = ToQt(edit.Text()).replace(u' ', missing);
            if (view.displayText() == text)
                return;
            const int caret = view.cursorPosition();
            view.setText(text);
            view.setCursorPosition(caret);
        });
    QObject::connect(&view, &QLineEdit::textEdited, &view, [&view, &edit, &dialogs] {
        RunGuarded(dialogs, [&] { edit.SetText(FromQt(view.displayText())); });
    });
    view.installEventFilter(&NewChild<TMaskFilter>(view, edit, dialogs));
}

} // namespace tidewell

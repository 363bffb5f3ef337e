#include "desktop/binders/EditBinder.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int unlimited = 32767; // characters, the toolkit's own limit

class TReturnFilter : public QObject {
  public:
    TReturnFilter(TEdit& edit, IDialogs& dialogs, QObject* parent)
        : QObject(parent), Edit(edit), Dialogs(dialogs) {}

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !Edit.OnReturn)
            return QObject::eventFilter(watched, event);
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key != Qt::Key_Return && key != Qt::Key_Enter)
            return QObject::eventFilter(watched, event);
        RunGuarded(Dialogs, [this] { Edit.OnReturn(); });
        return true;
    }

  private:
    TEdit& Edit;
    IDialogs& Dialogs;
};

// The limit is one for typing: a longer text of the form's own is shown whole.
void SetLimit(QLineEdit& view, int limit, int length) {
    const int most = limit > 0 ? std::max(limit, length) : unlimited;
    if (view.maxLength() == most)
        return;
    const int caret = view.cursorPosition(); // a new limit moves it to the end
    view.setMaxLength(most);
    view.setCursorPosition(caret);
}

} // namespace

void BindEdit(QLineEdit& view, TEdit& edit, IDialogs& dialogs) {
    BindControl(view, edit);
    if (edit.Masked())
        view.setStyleSheet(QStringLiteral("lineedit-password-character: 42")); // '*'
    KeepInStep(
        view, edit,
        [&view, &edit] {
            const QString text = ToQt(edit.Text());
            SetLimit(view, edit.MaxLength(), static_cast<int>(text.size()));
            view.setEchoMode(edit.Masked() ? QLineEdit::Password : QLineEdit::Normal);
            view.setReadOnly(edit.ReadOnly());
            if (view.text() != text)
                view.setText(text);
        });
    Keep(view, edit.SelectAllRequested.Connect([&view] { view.selectAll(); }));
    Keep(view, edit.CaretAtEndRequested.Connect([&view] { view.end(false); }));
    view.installEventFilter(&NewChild<TReturnFilter>(view, edit, dialogs));
    QObject::connect(&view, &QLineEdit::textEdited, &view, [&edit, &dialogs](const QString& text) {
        RunGuarded(dialogs, [&] { edit.Enter(FromQt(text)); });
    });
}

} // namespace tidewell

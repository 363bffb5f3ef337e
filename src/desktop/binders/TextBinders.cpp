#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"

#include <QFocusEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace tidewell {

namespace {

constexpr int unlimited = 32767; // characters, the toolkit's own limit
constexpr QChar missing = u'_';  // in a mask

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

// The limit is one for typing: a longer text of the form's own is shown whole.
void SetLimit(QLineEdit& view, int limit, int length) {
    const int most = limit > 0 ? std::max(limit, length) : unlimited;
    if (view.maxLength() == most)
        return;
    const int caret = view.cursorPosition(); // a new limit moves it to the end
    view.setMaxLength(most);
    view.setCursorPosition(caret);
}

// A caret at the end would go along to the end of each line, and the view with it, far to the right. Where
// the last line is in view, the new one is.
void AppendLine(QPlainTextEdit& view, const QString& line) {
    QTextCursor caret = view.textCursor();
    const QTextCursor last(view.document()->lastBlock());
    const bool follows = !caret.hasSelection() && caret.block() == last.block();
    const QRect end = view.cursorRect(last);
    const bool seen = end.bottom() >= 0 && end.top() < view.viewport()->height();
    view.appendPlainText(line);
    if (!follows)
        return;
    QScrollBar& horizontal = *view.horizontalScrollBar();
    QScrollBar& vertical = *view.verticalScrollBar();
    const int left = horizontal.value();
    const int top = seen ? vertical.maximum() : vertical.value();
    caret.setPosition(view.document()->lastBlock().position());
    view.setTextCursor(caret);
    horizontal.setValue(left);
    vertical.setValue(top);
}

} // namespace

void Bind(QLineEdit& view, TEdit& edit, IDialogs& dialogs) {
    BindControl(view, edit);
    if (edit.Masked())
        view.setStyleSheet(QStringLiteral("lineedit-password-character: 42")); // '*'
    KeepInStep(
        view, edit,
        [&] {
            const QString text = ToQt(edit.Text());
            SetLimit(view, edit.MaxLength(), static_cast<int>(text.size()));
            view.setEchoMode(edit.Masked() ? QLineEdit::Password : QLineEdit::Normal);
            view.setReadOnly(edit.ReadOnly());
            if (view.text() != text)
                view.setText(text);
        });
    Keep(view, edit.SelectAllRequested.Connect([&view] { view.selectAll(); }));
    Keep(view, edit.CaretAtEndRequested.Connect([&view] { view.end(false); }));
    FilterEvents(
        view,
        [&edit, &dialogs](const QEvent& event) {
            const bool taken = edit.OnReturn && IsEnter(event);
            if (taken)
                RunGuarded(
                    dialogs, [&edit] { edit.OnReturn(); });
            return taken;
        });
    OnSignal(view, &QLineEdit::textEdited, dialogs,
             [&edit](const QString& text) { edit.Enter(FromQt(text)); });
}

void Bind(QLineEdit& view, TMaskEdit& edit, IDialogs& dialogs) {
    BindControl(view, edit);
    view.setInputMask(InputMask(edit));
    KeepInStep(
        view, edit,
        [&] {
            const QString text = ToQt(edit.Text()).replace(u' ', missing);
            if (view.displayText() == text)
                return;
            const int caret = view.cursorPosition();
            view.setText(text);
            view.setCursorPosition(caret);
        });
    OnSignal(
        view, &QLineEdit::textEdited, dialogs, [&] { edit.SetText(FromQt(view.displayText())); });
    FilterEvents(view, [&](const QEvent& event) {
        const auto exit = [&] { RunGuarded(dialogs, [&edit] { edit.OnExit(); }); };
        if (event.type() == QEvent::MouseButtonRelease &&
            static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton) {
            // Once the field has done with the click: what it opens waits for the user.
            QTimer::singleShot(0, &view, [&edit, &dialogs] {
                if (edit.Enabled()) // clicks on a disabled field come here, too
                    RunGuarded(dialogs, [&edit] { edit.OnClick(); });
            });
        } else if (IsEnter(event)) {
            exit(); // and not the form's default button
            return true;
        } else if (event.type() == QEvent::FocusOut) {
            const auto reason = static_cast<const QFocusEvent&>(event).reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                exit();
        }
        return false;
    });
}

void Bind(QPlainTextEdit& view, TMemo& memo, IDialogs&) {
    view.setReadOnly(true);
    view.setLineWrapMode(QPlainTextEdit::NoWrap);
    view.setUndoRedoEnabled(false);
    view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    view.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    BindControl(view, memo);
    // Changed also tells of visibility and hints: the lines are read anew only if their number says so.
    auto shown = std::make_shared<std::size_t>(0);
    KeepInStep(view, memo, [&view, &memo, shown] {
        if (*shown == memo.Lines().size())
            return;
        *shown = memo.Lines().size();
        QStringList lines;
        for (const std::string& line : memo.Lines())
            lines.append(ToQt(line));
        view.setPlainText(lines.join(u'\n'));
    });
    Keep(view, memo.LineAdded.Connect([&view, shown](const std::string& line) {
        ++*shown;
        AppendLine(view, ToQt(line));
    }));
    Keep(view, memo.TopRequested.Connect([&view] { view.moveCursor(QTextCursor::Start); }));
}

} // namespace tidewell

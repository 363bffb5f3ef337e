#include "Robot.h"

#include <QtTest>
#include <QtWidgets>

namespace tidewell::test {

namespace {

constexpr int lookInterval = 5;  // ms
constexpr int patience = 10'000; // ms

// The popup; else the dialog on top if it has that name; without dialogs, the window of that name.
QWidget* Find(const QString& name) {
    if (name == QLatin1String("Popup"))
        return QApplication::activePopupWidget();
    QWidget* found = QApplication::activeModalWidget();
    if (found == nullptr)
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == name && window->isVisible())
                found = window;
    return found != nullptr && found->objectName() == name ? found : nullptr;
}

// The dialog, or else the window, that has the keyboard.
QWidget* TopWindow() {
    QWidget* top = QApplication::activeModalWidget();
    if (top == nullptr)
        top = QApplication::activeWindow();
    return top != nullptr && top->isVisible() ? top : nullptr;
}

} // namespace

TRobot::~TRobot() {
    EXPECT_TRUE(Done()) << "no window came up";
}

void TRobot::On(const QString& window, TAction action) {
    const bool idle = Steps.empty() && Acting == 0;
    Steps.push_back({window, std::move(action)});
    if (idle)
        Waiting.start();
    LookSoon();
}

void TRobot::OnMessage(const std::string& text) {
    On<QMessageBox>("MessageBox", [text](QMessageBox& box) {
        EXPECT_EQ(box.text().toStdString(), text);
        Type("\n");
    });
}

// A timer of its own each time: one that is running its handler does not tick again in a nested loop.
void TRobot::LookSoon() {
    if (std::exchange(LooksSoon, true))
        return;
    QTimer::singleShot(lookInterval, &Guard, [this] {
        LooksSoon = false;
        Look();
    });
}

void TRobot::Look() {
    QWidget* const top = Steps.empty() ? QApplication::activeModalWidget() : Find(Steps.front().Window);
    if (!Steps.empty() && top != nullptr && top->isActiveWindow()) {
        const TAction action = std::move(Steps.front().Action);
        Steps.pop_front();
        Waiting.start();
        LookSoon();
        ++Acting;
        action(*top);
        --Acting;
        return;
    }
    if (Steps.empty() && top == nullptr)
        return;
    // A platform without a display has nobody who hands the keyboard back when a window closes.
    if (top != nullptr)
        QApplication::setActiveWindow(top);
    if (Waiting.elapsed() >= patience) {
        const QWidget* const seen = TopWindow();
        ADD_FAILURE() << "waits for "
                      << (Steps.empty() ? "the end of all dialogs" : Steps.front().Window.toStdString())
                      << ", sees " << (seen != nullptr ? seen->objectName().toStdString() : "nothing");
        Steps.clear();
        if (QWidget* const modal = QApplication::activeModalWidget())
            modal->close();
    }
    LookSoon();
}

void Press(const QString& keys, QWidget* at) {
    for (const QString& name : keys.split(' ')) {
        const QKeyCombination key = QKeySequence(name)[0];
        if (at != nullptr)
            QTest::keyClick(at, key.key(), key.keyboardModifiers());
        else if (QWidget* const top = TopWindow())
            QTest::keyClick(top->windowHandle(), key.key(), key.keyboardModifiers());
    }
}

void Type(const QString& text) {
    static const QHash<QChar, QString> keys{
        {u'\t', "Tab"}, {u'\n', "Return"}, {u' ', "Space"}, {u'\x1b', "Esc"}};
    for (const QChar letter : text)
        if (keys.contains(letter))
            Press(keys[letter]);
        else if (QWidget* const top = TopWindow())
            QTest::sendKeyEvent(QTest::Click, top->windowHandle(), Qt::Key_unknown, letter, Qt::NoModifier);
}

void Hold(QWidget& widget, Qt::Key key, const QString& text) {
    QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, text, true);
    QCoreApplication::sendEvent(&widget, &held);
}

void Drag(QWidget& widget, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers) {
    QTest::mousePress(&widget, Qt::LeftButton, modifiers, from);
    QTest::mouseMove(&widget, (from + to) / 2);
    QTest::mouseMove(&widget, to);
    QTest::mouseRelease(&widget, Qt::LeftButton, modifiers, to);
}

void Wheel(QWidget& widget, QPoint place, int notches, Qt::KeyboardModifiers modifiers) {
    QWheelEvent event(place, widget.mapToGlobal(place), {}, {0, 120 * notches}, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
}

std::string Focused() {
    const QWidget* const widget = QApplication::focusWidget();
    return widget != nullptr ? widget->objectName().toStdString() : std::string();
}

std::string TabRing() {
    constexpr std::size_t most = 300; // characters
    const std::string first = Focused();
    std::string ring;
    do {
        ring += Focused() + ' ';
        Press("Tab");
    } while (Focused() != first && ring.size() < most);
    return ring;
}

} // namespace tidewell::test

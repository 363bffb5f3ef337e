#include "Robot.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <utility>

namespace tidewell::test {

namespace {

constexpr int lookInterval = 5;  // ms
constexpr int patience = 10'000; // ms

// The dialog on top if it has that name; without dialogs, the window of that name.
QWidget* Find(const QString& name) {
    QWidget* found = QApplication::activeModalWidget();
    if (found == nullptr)
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->objectName() == name && window->isVisible())
                found = window;
    return found != nullptr && found->objectName() == name ? found : nullptr;
}

} // namespace

void TRobot::On(const QString& window, TAction action) {
    const bool idle = Steps.empty() && Acting == 0;
    Steps.push_back({window, std::move(action)});
    if (idle)
        Waiting.start();
    LookSoon();
}

// A timer of its own each time: one that is running its handler does not tick again in a nested loop.
void TRobot::LookSoon() {
    if (std::exchange(LooksSoon, true))
        return;
    QTimer::singleShot(lookInterval, &Guard, [this] { Look(); });
}

void TRobot::Look() {
    LooksSoon = false;
    QWidget* const top = Steps.empty() ? TopWindow() : Find(Steps.front().Window);
    if (Steps.empty() || top == nullptr || !top->isActiveWindow()) {
        // A platform without a display has nobody who hands the keyboard back when a window closes.
        if (!Steps.empty() && top != nullptr)
            QApplication::setActiveWindow(top);
        if (Steps.empty() && QApplication::activeModalWidget() == nullptr)
            return;
        if (Waiting.elapsed() < patience)
            return LookSoon();
        const QString line =
            QStringLiteral("waits for %1, sees %2")
                .arg(Steps.empty() ? QStringLiteral("the end of all dialogs") : Steps.front().Window,
                     TopWindow() != nullptr ? TopWindow()->objectName() : QStringLiteral("nothing"));
        Steps.clear();
        return Stuck(line);
    }
    const TAction action = std::move(Steps.front().Action);
    Steps.pop_front();
    Waiting.start();
    LookSoon();
    ++Acting;
    action(*top);
    --Acting;
}

QWidget* TopWindow() {
    QWidget* top = QApplication::activeModalWidget();
    if (top == nullptr)
        top = QApplication::activeWindow();
    return top != nullptr && top->isVisible() ? top : nullptr;
}

void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (QWidget* const top = TopWindow())
        QTest::keyClick(top->windowHandle(), key, modifiers);
}

void Type(const QString& text) {
    for (const QChar letter : text) {
        if (letter == u'\t')
            Press(Qt::Key_Tab);
        else if (letter == u'\n')
            Press(Qt::Key_Return);
        else if (letter == u' ')
            Press(Qt::Key_Space);
        else if (letter == u'\x1b')
            Press(Qt::Key_Escape);
        else if (QWidget* const top = TopWindow())
            QTest::sendKeyEvent(QTest::Click, top->windowHandle(), Qt::Key_unknown, letter, Qt::NoModifier);
    }
}

std::string Focused() {
    const QWidget* const widget = QApplication::focusWidget();
    return widget != nullptr ? widget->objectName().toStdString() : std::string();
}

std::vector<std::string> TabRing() {
    constexpr std::size_t most = 30;
    std::vector<std::string> ring;
    do {
        ring.push_back(Focused());
        Press(Qt::Key_Tab);
    } while (Focused() != ring.front() && ring.size() < most);
    return ring;
}

} // namespace tidewell::test

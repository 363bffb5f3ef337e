#pragma once

#include "rig/Test.h"

#include <QElapsedTimer>
#include <QWidget>

namespace tidewell::test {

// A person at the screen: does one thing after the other, each once the window that it is for has come up on
// top, from inside whatever event loop runs then. A window that does not come within ten seconds is a
// failure, and so is a thing not done when the robot goes.
class TRobot {
  public:
    using TAction = std::function<void(QWidget&)>;

    TRobot() = default;
    ~TRobot();
    TRobot(const TRobot&) = delete;
    TRobot& operator=(const TRobot&) = delete;

    // The window's object name, or "Popup" for a menu, and what to do there.
    void On(const QString& window, TAction action);
    template <class TWindow>
    void On(const QString& window, std::function<void(TWindow&)> action) {
        On(window, TAction([action](QWidget& widget) { action(dynamic_cast<TWindow&>(widget)); }));
    }
    // Enter in a message box, once it has this text.
    void OnMessage(const std::string& text);
    bool Done() const { return Steps.empty() && !Acting; }

  private:
    struct TStep {
        QString Window;
        TAction Action;
    };
    void LookSoon();
    void Look();

    std::deque<TStep> Steps;
    QElapsedTimer Waiting;
    int Acting = 0;
    bool LooksSoon = false;
    QObject Guard;
};

// Types into the dialog, or else the window, that has the keyboard: "\t" is Tab, "\n" Enter, "\x1b" Esc.
void Type(const QString& text);
// Keys such as "Down PgUp Ctrl+F", there or at a widget.
void Press(const QString& keys, QWidget* at = nullptr);
// A key that was held down since before.
void Hold(QWidget& widget, Qt::Key key, const QString& text = {});
void Drag(QWidget& widget, QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {});
void Wheel(QWidget& widget, QPoint place, int notches, Qt::KeyboardModifiers modifiers = {});
// Object name of the widget that has the keyboard.
std::string Focused();
// The widgets that Tab passes from the present one until it comes round.
std::string TabRing();
template <class TWidget>
TWidget& Child(QWidget& window, const char* name) {
    return dynamic_cast<TWidget&>(*window.findChild<QWidget*>(QString::fromLatin1(name)));
}

} // namespace tidewell::test

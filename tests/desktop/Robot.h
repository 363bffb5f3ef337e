#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QWidget>

#include <deque>
#include <functional>
#include <string>
#include <vector>

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

// The dialog, or else the window, that has the keyboard.
QWidget* TopWindow();
// Types into the window on top: "\t" is Tab, "\n" Enter, "\x1b" Esc.
void Type(const QString& text);
void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
// Object name of the widget that has the keyboard.
std::string Focused();
// The widgets that Tab passes from the present one until it comes round.
std::vector<std::string> TabRing();

} // namespace tidewell::test

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

// A person at the keyboard: does one thing after the other, each once the window that it is for has come up
// on top, from inside whatever event loop runs then.
class TRobot {
  public:
    using TAction = std::function<void(QWidget&)>;

    // What happens when a window does not come within ten seconds, or a dialog is left at the end; gets a
    // line about it. No further step is done.
    explicit TRobot(std::function<void(const QString&)> stuck) : Stuck(std::move(stuck)) {}

    // The window's object name, and what to do there.
    void On(const QString& window, TAction action);
    bool Done() const { return Steps.empty() && !Acting; }

  private:
    struct TStep {
        QString Window;
        TAction Action;
    };
    void LookSoon();
    void Look();

    std::function<void(const QString&)> Stuck;
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

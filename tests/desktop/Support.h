#pragma once

#include "desktop/QtApplication.h"
#include "desktop/QtDialogs.h"
#include "desktop/QtTime.h"

#include <QAbstractButton>
#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace tidewell::test {

inline TQtApplication& Application() {
    return *static_cast<TQtApplication*>(QCoreApplication::instance());
}

// Turns the event loop until the condition holds or the time (ms) has passed; whether it holds.
inline bool WaitFor(const std::function<bool()>& condition, int patience = 30'000) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && elapsed.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    return condition();
}

// Does something to the next dialog of a kind that opens; one must open before the object dies.
template <class TDialog>
class TOnNext {
  public:
    explicit TOnNext(std::function<void(TDialog&)> action) : Action(std::move(action)) {
        Timer.setInterval(5);
        QObject::connect(&Timer, &QTimer::timeout, &Timer, [this] { Look(); });
        Timer.start();
    }
    ~TOnNext() { EXPECT_TRUE(Seen) << "no dialog opened"; }
    TOnNext(const TOnNext&) = delete;
    TOnNext& operator=(const TOnNext&) = delete;

  private:
    void Look() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* const dialog = dynamic_cast<TDialog*>(window);
            if (dialog == nullptr || !dialog->isVisible())
                continue;
            Timer.stop();
            Seen = true;
            Action(*dialog);
            return;
        }
    }

    std::function<void(TDialog&)> Action;
    QTimer Timer;
    bool Seen = false;
};

// Answers the next message box and keeps its text.
class TOnMessageBox {
  public:
    explicit TOnMessageBox(std::function<void(QMessageBox&)> action)
        : Next([this, action = std::move(action)](QMessageBox& box) {
              Text = box.text();
              action(box);
          }) {}

    QString Text;

  private:
    TOnNext<QMessageBox> Next;
};

// The ports that the views need, as the program has them.
struct TTestDesk {
    TDeliveryHold Hold;
    TQtDialogs Dialogs{Application()};
    TQtTimers Timers{Hold, Dialogs};
    TQtWait Wait{Hold};
};

} // namespace tidewell::test

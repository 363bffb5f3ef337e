#include "desktop/QtTimers.h"

#include "core/Guard.h"

#include <QTimer>

namespace tidewell {

namespace {

class TQtTimer : public ITimer {
  public:
    TQtTimer(TDeliveryHold& hold, IDialogs& dialogs) : Hold(hold), Dialogs(dialogs) {
        Timer.setTimerType(Qt::PreciseTimer);
        Timer.setInterval(1000);
        QObject::connect(
            &Timer, &QTimer::timeout, &Timer, [this] { Tick(); });
        Released = Hold.Released.Connect([this] {
            if (Due)
                QMetaObject::invokeMethod(
                    &Timer, [this] { TickIfDue(); }, Qt::QueuedConnection);
        });
    }

    void SetInterval(int milliseconds) override {
        if (milliseconds != Timer.interval())
            Timer.setInterval(milliseconds);
    }
    int Interval() const override { return Timer.interval(); }
    void SetEnabled(bool enabled) override {
        if (enabled == Timer.isActive())
            return;
        Due = false;
        if (enabled)
            Timer.start();
        else
            Timer.stop();
    }
    bool Enabled() const override { return Timer.isActive(); }
    void SetHandler(std::function<void()> handler) override { Handler = std::move(handler); }

  private:
    void Tick() {
        Due = Hold.Held();
        if (Due)
            return;
        // The handler may destroy this timer.
        RunGuarded(Dialogs, [handler = Handler] {
            if (handler)
                handler();
        });
    }
    void TickIfDue() {
        if (Due)
            Tick();
    }

    TDeliveryHold& Hold;
    IDialogs& Dialogs;
    TConnection Released;
    bool Due = false;
    QTimer Timer;
    std::function<void()> Handler;
};

} // namespace

std::unique_ptr<ITimer> TQtTimers::CreateTimer() {
    return std::make_unique<TQtTimer>(Hold, Dialogs);
}

} // namespace tidewell

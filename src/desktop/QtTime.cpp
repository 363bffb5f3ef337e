#include "desktop/QtTime.h"

#include "core/Guard.h"
#include "desktop/QtText.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace tidewell {

namespace {

constexpr qint64 slice = 10;       // ms between two looks for something to paint
constexpr int processingTime = 20; // ms; what is due after that waits for the next call

QDateTime Local(TTime time) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(ms.count());
}

class TQtTimer : public ITimer {
  public:
    TQtTimer(TDeliveryHold& hold, IDialogs& dialogs)
        : Tick(hold, [this, &dialogs] { RunGuarded(dialogs, [handler = Handler] { handler(); }); }) {
        Timer.setTimerType(Qt::PreciseTimer);
        Timer.setInterval(1000);
        QObject::connect(&Timer, &QTimer::timeout, &Timer, [this] { Tick.FallDue(); });
    }

    void SetInterval(int milliseconds) override {
        if (milliseconds != Timer.interval())
            Timer.setInterval(milliseconds);
    }
    int Interval() const override { return Timer.interval(); }
    void SetEnabled(bool enabled) override {
        if (enabled == Timer.isActive())
            return;
        Tick.Drop();
        if (enabled)
            Timer.start();
        else
            Timer.stop();
    }
    bool Enabled() const override { return Timer.isActive(); }
    void SetHandler(std::function<void()> handler) override { Handler = std::move(handler); }

  private:
    TEvent<> Handler;
    TDelivery Tick;
    QTimer Timer;
};

} // namespace

TDelivery::TDelivery(TDeliveryHold& hold, std::function<void()> deliver)
    : Hold(hold), Released(Hold.Released.Connect([this] {
          if (Due)
              QMetaObject::invokeMethod(
                  &Context,
                  [this] {
                      if (Due)
                          FallDue();
                  },
                  Qt::QueuedConnection);
      })) {
    Deliver = std::move(deliver);
}

void TDelivery::FallDue() {
    Due = Hold.Held();
    if (Due)
        return;
    const auto deliver = Deliver;
    deliver();
}

std::unique_ptr<ITimer> TQtTimers::CreateTimer() {
    return std::make_unique<TQtTimer>(Hold, Dialogs);
}

void TQtWait::Sleep(int milliseconds) {
    const auto held = Hold.Hold();
    QElapsedTimer elapsed;
    elapsed.start();
    for (;;) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                        QEventLoop::ExcludeSocketNotifiers);
        const qint64 left = milliseconds - elapsed.elapsed();
        if (left <= 0)
            return;
        QThread::msleep(static_cast<unsigned long>(std::min(left, slice)));
    }
}

void TQtWait::ProcessMessages() {
    QCoreApplication::processEvents(QEventLoop::AllEvents, processingTime);
}

TQtClock::TQtClock(const QLocale& locale) : Locale(locale) {
    if (Locale.language() == QLocale::C)
        return;
    DateFormat = Locale.dateFormat(QLocale::ShortFormat);
    TimeFormat = Locale.timeFormat(QLocale::ShortFormat);
    // Qt's long form ends in the time zone.
    static const QRegularExpression zone(QStringLiteral(R"(\s*[(\[]?\bt+\b[)\]]?)"));
    LongTimeFormat = Locale.timeFormat(QLocale::LongFormat).remove(zone).trimmed();
}

TTime TQtClock::Now() const {
    return std::chrono::system_clock::now();
}

std::pair<int, int> TQtClock::HourMinute(TTime time) const {
    const QTime local = Local(time).time();
    return {local.hour(), local.minute()};
}

TTime TQtClock::Midnight(TTime time) const {
    const qint64 ms = Local(time).date().startOfDay().toMSecsSinceEpoch();
    return TTime(std::chrono::milliseconds(ms));
}

std::string TQtClock::ShortDate(TTime time) const {
    return FromQt(Locale.toString(Local(time).date(), DateFormat));
}

std::string TQtClock::ShortTime(TTime time) const {
    return FromQt(Locale.toString(Local(time).time(), TimeFormat));
}

std::string TQtClock::LongTime(TTime time) const {
    return FromQt(Locale.toString(Local(time).time(), LongTimeFormat));
}

} // namespace tidewell

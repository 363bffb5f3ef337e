#pragma once

#include "core/AtExit.h"
#include "core/controls/Control.h"
#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "core/ports/ITimers.h"
#include "core/ports/IWait.h"

#include <QLocale>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace tidewell {

// While held, no timer ticks and no form hears of its new size.
class TDeliveryHold {
  public:
    bool Held() const { return Depth > 0; }
    // Until the end of the block that keeps the result.
    [[nodiscard]] auto Hold() {
        ++Depth;
        return TAtExit([this] {
            if (--Depth == 0)
                Released.Emit();
        });
    }

    // Handlers only post what is due; they run nothing at once and do not throw.
    TSignal<> Released;

  private:
    int Depth = 0;
};

// What is told at once or, where it falls due during a hold, once by the event loop after it.
class TDelivery {
  public:
    TDelivery(TDeliveryHold& hold, std::function<void()> deliver);
    // What it runs may destroy this object.
    void FallDue();
    // Nothing is due any more.
    void Drop() { Due = false; }

  private:
    TDeliveryHold& Hold;
    TEvent<> Deliver;
    QObject Context; // of what is posted
    TConnection Released;
    bool Due = false;
};

// Timers of the event loop. Ticks that fall due while deliveries are held come as one, afterwards.
class TQtTimers : public ITimers {
  public:
    TQtTimers(TDeliveryHold& hold, IDialogs& dialogs) : Hold(hold), Dialogs(dialogs) {}
    std::unique_ptr<ITimer> CreateTimer() override;

  private:
    TDeliveryHold& Hold;
    IDialogs& Dialogs;
};

class TQtWait : public IWait {
  public:
    explicit TQtWait(TDeliveryHold& hold) : Hold(hold) {}
    void Sleep(int milliseconds) override;
    void ProcessMessages() override;

  private:
    TDeliveryHold& Hold;
};

// The machine's clock, in the formats of a locale. The C locale has none of its own and gets yyyy-MM-dd,
// HH:mm and HH:mm:ss.
class TQtClock : public IClock {
  public:
    explicit TQtClock(const QLocale& locale = QLocale::system());

    TTime Now() const override;
    std::pair<int, int> HourMinute(TTime time) const override;
    TTime Midnight(TTime time) const override;
    std::string ShortDate(TTime time) const override;
    std::string ShortTime(TTime time) const override;
    std::string LongTime(TTime time) const override;

  private:
    QLocale Locale;
    QString DateFormat = QStringLiteral("yyyy-MM-dd");
    QString TimeFormat = QStringLiteral("HH:mm");
    QString LongTimeFormat = QStringLiteral("HH:mm:ss");
};

} // namespace tidewell

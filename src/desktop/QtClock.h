#pragma once

#include "core/ports/IClock.h"

#include <QLocale>
#include <QString>

namespace tidewell {

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

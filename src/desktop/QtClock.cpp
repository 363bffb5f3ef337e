#include "desktop/QtClock.h"

#include "desktop/QtText.h"

#include <QDateTime>
#include <QRegularExpression>

namespace tidewell {

namespace {

QDateTime Local(TTime time) {
    const auto ms = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(ms.count());
}

} // namespace

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

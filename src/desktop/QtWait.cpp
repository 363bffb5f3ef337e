#include "desktop/QtWait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <algorithm>

namespace tidewell {

namespace {

constexpr qint64 slice = 10;       // ms between two looks for something to paint
constexpr int processingTime = 20; // ms; what is due after that waits for the next call

} // namespace

void TQtWait::Sleep(int milliseconds) {
    const TDeliveryHold::TScope held(Hold);
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

} // namespace tidewell

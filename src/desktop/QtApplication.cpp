#include "desktop/QtApplication.h"

#include <QKeyEvent>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

#include <iostream>

namespace tidewell {

TQtApplication::TQtApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setQuitOnLastWindowClosed(false);
    // What a platform without a look of its own falls back on.
    if (style()->name().compare(QLatin1String("windows"), Qt::CaseInsensitive) == 0)
        setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
}

void TQtApplication::Run() {
    if (IsTerminated)
        return;
    Running = true;
    exec();
    Running = false;
}

void TQtApplication::Terminate() {
    IsTerminated = true;
    if (Running)
        RequestExit();
}

void TQtApplication::WriteError(const std::string& line) {
    std::cerr << line << std::endl;
}

void TQtApplication::RequestExit() {
    const auto exitUnlessHeld = [this] {
        if (Holds == 0)
            exit();
    };
    QMetaObject::invokeMethod(this, exitUnlessHeld, Qt::QueuedConnection);
}

bool TQtApplication::notify(QObject* receiver, QEvent* event) {
    try {
        if (Preview(*receiver, *event)) {
            event->accept();
            return true;
        }
        return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
        OnException(error);
    }
    return false;
}

bool TQtApplication::Preview(QObject& receiver, QEvent& event) const {
    if (event.type() != QEvent::KeyPress || !receiver.isWidgetType())
        return false;
    bool handled = false;
    KeyPreview.Emit(static_cast<QWidget&>(receiver), static_cast<QKeyEvent&>(event), handled);
    return handled;
}

} // namespace tidewell

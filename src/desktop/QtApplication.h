#pragma once

#include "core/AtExit.h"
#include "core/controls/Control.h"
#include "core/ports/IApplication.h"

#include <QApplication>

#include <exception>

class QKeyEvent;

namespace tidewell {

// The application object: the message loop, the last net for exceptions, and the key preview.
class TQtApplication : public QApplication, public IApplication {
  public:
    TQtApplication(int& argc, char** argv);

    // The message loop; it ends by Terminate.
    void Run();
    void Terminate() override;
    bool Terminated() const override { return IsTerminated; }
    void WriteError(const std::string& line) override;
    // The message loop is about to end.
    bool Ending() const { return IsTerminated && Running; }

    // Until the end of the block that keeps the result the message loop does not end, so that what a message
    // box tells is seen.
    [[nodiscard]] auto HoldEnding() {
        ++Holds;
        return TAtExit([this] {
            if (--Holds == 0 && Ending())
                RequestExit();
        });
    }

    // Gets what would leave an event handler; it must not throw.
    TEvent<const std::exception&> OnException;
    // A key pressed in a widget, once, before the widget gets it. Set the flag to keep it from the widget.
    TSignal<QWidget&, QKeyEvent&, bool&> KeyPreview;

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    bool Preview(QObject& receiver, QEvent& event) const;
    void RequestExit();

    bool IsTerminated = false;
    bool Running = false;
    int Holds = 0;
};

} // namespace tidewell

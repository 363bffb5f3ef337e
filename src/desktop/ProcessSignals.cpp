#include "desktop/ProcessSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace tidewell {

namespace {

// All that a signal handler can reach: the end of the pipe that it writes to.
std::atomic<int> writeEnd{-1};

void WriteSignal(int number) {
    const int saved = errno;
    const auto byte = static_cast<unsigned char>(number);
    if (write(writeEnd, &byte, 1) < 0) {
        // A full pipe holds enough signals already.
    }
    errno = saved;
}

void SetAction(int number, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
}

} // namespace

TProcessSignals::TProcessSignals() {
    if (pipe2(Pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    Notifier = std::make_unique<QSocketNotifier>(Pipe[0], QSocketNotifier::Read);
    QObject::connect(Notifier.get(), &QSocketNotifier::activated, Notifier.get(), [this] { Read(); });
    writeEnd = Pipe[1];
    struct sigaction before = {};
    TakesHangUp = sigaction(SIGHUP, nullptr, &before) == 0 && before.sa_handler != SIG_IGN;
    SetActions(WriteSignal);
}

TProcessSignals::~TProcessSignals() {
    if (!Notifier)
        return;
    SetActions(SIG_DFL);
    writeEnd = -1;
    Notifier.reset();
    close(Pipe[0]);
    close(Pipe[1]);
}

void TProcessSignals::SetActions(void (*handler)(int)) const {
    for (const int number : {SIGINT, SIGTERM, SIGUSR1})
        SetAction(number, handler);
    if (TakesHangUp)
        SetAction(SIGHUP, handler);
}

void TProcessSignals::Read() {
    unsigned char number = 0;
    bool report = false;
    bool end = false;
    while (read(Pipe[0], &number, 1) == 1)
        (number == SIGUSR1 ? report : end) = true;
    if (report)
        OnReport();
    if (end)
        OnEnd();
}

} // namespace tidewell

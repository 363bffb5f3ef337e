// The program's own work from exec to the painted main form on the example installation, with the three
// pauses of the splash left out. Runs itself as a child once per round, since the loading of libraries
// counts, too. Without a display it needs QT_QPA_PLATFORM=offscreen in the environment.

#include "desktop/Desktop.h"
#include "mainform/Program.h"

#include <QEvent>
#include <QWidget>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 15;
constexpr int shortestPause = 500; // ms; the splash pauses last 500 ms and more

double MonotonicMs() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Paints, as a pause does, but does not wait.
class TNoPauses : public tidewell::IWait {
  public:
    explicit TNoPauses(tidewell::IWait& wait) : Wait(wait) {}
    void Sleep(int milliseconds) override { Wait.Sleep(milliseconds < shortestPause ? milliseconds : 0); }
    void ProcessMessages() override { Wait.ProcessMessages(); }

  private:
    tidewell::IWait& Wait;
};

// Notes the time when the main form has been painted for the first time.
class TFirstPaint : public QObject {
  public:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (PaintedAt == 0 && event->type() == QEvent::UpdateRequest &&
            object->objectName() == QStringLiteral("FormMain")) {
            QCoreApplication::instance()->removeEventFilter(this);
            QCoreApplication::sendEvent(object, event); // paints
            PaintedAt = MonotonicMs();
            QCoreApplication::quit();
            return true;
        }
        return false;
    }
    double PaintedAt = 0;
};

int Child(int argc, char** argv, double startedAt, const fs::path& result) {
    tidewell::TQtApplication application(argc, argv);
    const fs::path home = fs::current_path();
    tidewell::TDesktop desktop(application, home);
    TNoPauses wait(desktop.Wait);
    const tidewell::TPorts real = desktop.Ports();
    const tidewell::TPorts ports{real.Dialogs,  real.Timers,    wait,         real.Clock,
                                 real.Files,    real.Libraries, real.Process, real.Application,
                                 real.Pictures, real.MakeHttp};
    const auto program = tidewell::Build(ports, {home, argv[0], {}, {}, {}});
    desktop.RegisterViews(*program);
    TFirstPaint firstPaint;
    application.installEventFilter(&firstPaint);
    program->Start();
    if (firstPaint.PaintedAt == 0)
        application.Run();
    std::ofstream(result) << firstPaint.PaintedAt - startedAt;
    std::_Exit(EXIT_SUCCESS); // the close is not measured
}

double OneRound(const fs::path& self, const fs::path& home) {
    const fs::path result = home / "elapsed";
    const std::string startedAt = std::to_string(MonotonicMs());
    std::string arguments[] = {self.string(), "--child", startedAt, result.string()};
    char* const argv[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(), arguments[3].data(),
                          nullptr};
    pid_t child = 0;
    if (posix_spawn(&child, self.c_str(), nullptr, nullptr, argv, environ) != 0 ||
        waitpid(child, nullptr, 0) < 0)
        return -1;
    double elapsed = -1;
    std::ifstream(result) >> elapsed;
    return elapsed;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "--child")
        return Child(argc, argv, std::strtod(argv[2], nullptr), argv[3]);

    const fs::path self = fs::canonical("/proc/self/exe");
    const fs::path home = fs::temp_directory_path() / ("tidewell-start-" + std::to_string(getpid()));
    fs::copy(TIDEWELL_INSTALLATION, home, fs::copy_options::recursive);
    fs::current_path(home);
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round)
        times.push_back(OneRound(self, home));
    fs::current_path("/");
    fs::remove_all(home);
    std::sort(times.begin(), times.end());
    std::cout << "From exec to the painted main form, ms: least " << times.front() << ", median "
              << times[times.size() / 2] << ", most " << times.back() << '\n';
    return times.front() > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

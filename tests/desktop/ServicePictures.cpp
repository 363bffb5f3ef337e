#include "Picture.h"
#include "sim/nabto/SimulationRows.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

namespace tidewell::test {

namespace {

constexpr int drawn = 400; // ms, after which the curves stand on the screen
constexpr const char* package = "/opt/tidewell/firmware/aria450/config.fwc";

const std::vector<std::string> linked = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

std::vector<std::string> LinkedWith(std::vector<std::string> options) {
    options.insert(options.begin(), linked.begin(), linked.end());
    return options;
}

TNabtoDevice& Device(TStage stage) {
    return stage.Screen.Program->NabtoDevice;
}

void ClickOn(QWidget& window, const char* name) {
    QTest::mouseClick(window.findChild<QWidget*>(QString::fromLatin1(name)), Qt::LeftButton);
}

void OpenServiceForm(TStage stage) {
    stage.Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F11); });
}

bool Update(TStage stage) {
    Device(stage).CurrentUpdateSWFile = package;
    return Device(stage).Update.UpdateSW(package);
}

// The picture is taken so long after the begin of an update, which waits meanwhile.
void ShowUpdateAfter(TStage stage, int milliseconds) {
    QTimer::singleShot(0, qApp, [stage, milliseconds] {
        stage.Screen.Time.After(milliseconds, [stage] {
            while (!stage.Robot.Done())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        });
        Update(stage);
    });
}

// The panel, with some days of a while ago.
void ShowFlashRange(QWidget& window) {
    ClickOn(window, "ButFlashDatalog");
    auto& track = *window.findChild<QWidget*>("DayTracker");
    track.setFocus(Qt::TabFocusReason);
    Press(Qt::Key_PageUp);
    Press(Qt::Key_PageUp);
    Press(Qt::Key_Tab);
    Press(Qt::Key_Home);
    for (int day = 0; day < 5; ++day)
        Press(Qt::Key_PageUp);
}

} // namespace

std::vector<TPicture> ServicePictures() {
    constexpr int inDisplayFile = 9000; // ms
    return {
        {"update-running", "NabtoDevice", linked, OpenServiceForm,
         [](QWidget&, TStage stage) { ShowUpdateAfter(stage, inDisplayFile); }},
        {"update-main",
         "FormMain",
         linked,
         {},
         [](QWidget&, TStage stage) { ShowUpdateAfter(stage, inDisplayFile); }},
        {"update-done", "NabtoDevice", linked, OpenServiceForm,
         [](QWidget&, TStage stage) { Update(stage); }},
        {"update-failed", "NabtoDevice", linked, OpenServiceForm,
         [](QWidget&, TStage stage) {
             std::vector<TFault> faults;
             ParseFaultRow("Refuse", "6; query=FlashWriteNostream.json; state=5", faults);
             stage.Screen.Nabto.FindController(linked[1])->Faults.Replace(faults);
             Update(stage);
         }},
        {"flash-datalog", "NabtoDevice", linked, OpenServiceForm,
         [](QWidget& window, TStage) { ShowFlashRange(window); }},
        {"flash-graph", "FormMain", linked,
         [](TStage stage) {
             OpenServiceForm(stage);
             stage.Robot.On("NabtoDevice", [](QWidget& window) {
                 ShowFlashRange(window);
                 ClickOn(window, "DT_GetData");
             });
             stage.Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
         },
         [](QWidget&, TStage) { QTest::qWait(drawn); }},
        {"errorlog",
         "FormMain",
         linked,
         {},
         [](QWidget& window, TStage) { ClickOn(window, "but_errorlog"); }},
        {"service-panels", "NabtoDevice",
         LinkedWith({"-debugShowEEPanel", "true", "-debugShowFlashPanel", "true", "-debugContUpdate", "true",
                     "-debugShowExtendedVersionInfo", "true"}),
         OpenServiceForm,
         [](QWidget& window, TStage stage) {
             stage.Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
             window.findChild<QWidget*>("RErrorlogStart")->setFocus(Qt::TabFocusReason);
             Type("256\t8\n");
         }},
    };
}

} // namespace tidewell::test

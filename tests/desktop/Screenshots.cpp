// Paints the program's dialogs, filled from the example installation, into picture files:
//
//     screenshots <folder> light|dark [<name of a picture>...]
//
// leaves <folder>/<name>-<theme>-<scale>.png, the scale in percent as QT_SCALE_FACTOR asks for. All of them:
//
//     cmake --build --preset dev --target pictures

#include "Picture.h"
#include "widgets/Icons.h"

#include <QPainter>
#include <QStyle>
#include <QStyleFactory>
#include <QTemporaryFile>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace tidewell::test {

namespace {

const std::vector<std::string> signedIn = {"-LoginUserPW", "service;tidewell"};
const std::vector<std::string> linked = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

// Presses a key in the main form.
std::function<void(TStage)> Key(Qt::Key key) {
    return [key](TStage stage) { stage.Robot.On("FormMain", [key](QWidget&) { Press(key); }); };
}

void ClickOn(QWidget& window, const char* name) {
    QTest::mouseClick(window.findChild<QWidget*>(QString::fromLatin1(name)), Qt::LeftButton);
}

std::vector<TPicture> Pictures() {
    return {
        {"logon", "NabtoLogOn", {}, {}, [](QWidget&, TStage) { Type("service\ttidewell\t "); }},
        {"setup",
         "SetupForm",
         signedIn,
         {},
         [](QWidget&, TStage) {
             Type("\t \t");
             Press(Qt::Key_Down);
         }},
        {"driver", "NabtoDevice", signedIn,
         [](TStage stage) {
             stage.Robot.On("SetupForm", [](QWidget&) { Type("410000000001\n"); });
             Key(Qt::Key_F11)(stage);
         },
         [](QWidget& window, TStage stage) {
             stage.Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
             ClickOn(window, "btnPing");
             ClickOn(window, "btnShowReadList");
         }},
        {"language", "languagedialog", linked, Key(Qt::Key_F12), {}},
        {"message", "MessageBox", linked, Key(Qt::Key_F2), {}},
    };
}

QPalette Dark() {
    const QColor window(53, 53, 53);
    const QColor base(35, 35, 35);
    const QColor ink(230, 230, 230);
    const QColor grey(128, 128, 128);
    const QColor blue(42, 130, 218);
    QPalette palette(window);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, ink);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, grey);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(45, 45, 45));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::PlaceholderText, grey);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Link, blue);
    palette.setColor(QPalette::Highlight, blue);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

// The window with a plain frame around it, which bears its title, and what lies over it.
QPixmap Framed(QWidget& window) {
    constexpr int bar = 26; // pixels at 100 %, here and below
    constexpr int icon = 16;
    const QPixmap content = window.grab();
    const double scale = content.devicePixelRatio();
    const QRect whole(0, 0, window.width() + 2, window.height() + bar + 1);
    QPixmap picture(whole.size() * scale);
    picture.setDevicePixelRatio(scale);
    const QPalette palette = QApplication::palette();
    picture.fill(palette.color(QPalette::Mid));
    QPainter painter(&picture);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, whole.width(), bar), Qt::AlignCenter, window.windowTitle());
    QApplication::windowIcon().paint(&painter, (bar - icon) / 2, (bar - icon) / 2, icon, icon);
    painter.drawPixmap(1, bar, content);
    for (QWidget* const over : QApplication::topLevelWidgets())
        if (over->isVisible() && (over->windowType() == Qt::Popup || over->windowType() == Qt::ToolTip))
            painter.drawPixmap(over->pos() - window.pos() + QPoint(1, bar), over->grab());
    return picture;
}

bool Take(const TPicture& picture, const QString& folder, const QString& theme) {
    bool taken = false;
    TProgramOnScreen screen;
    screen.Arguments = picture.Arguments;
    TRobot robot([&](const QString& line) {
        std::cerr << picture.Name.toStdString() << ": the robot " << line.toStdString() << '\n';
        screen.Desktop.Dialogs.CancelAll();
    });
    const TStage stage{screen, robot};
    const auto shoot = [&](QWidget& window) {
        const QPixmap framed = Framed(window);
        const QString file = QStringLiteral("%1/%2-%3-%4.png")
                                 .arg(folder, picture.Name, theme)
                                 .arg(qRound(framed.devicePixelRatio() * 100));
        taken = framed.save(file);
        std::cout << (taken ? "" : "Cannot write ") << file.toStdString() << '\n';
        screen.Desktop.Dialogs.CancelAll();
    };
    if (picture.Before)
        picture.Before(stage);
    robot.On(picture.Window, [&](QWidget& window) {
        if (picture.Fill)
            picture.Fill(window, stage);
        robot.On(picture.Window, shoot);
    });
    screen.Build();
    screen.Advance(200);
    while (!robot.Done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return taken;
}

// A screen of 1280 by 720 at 100 %, and as much room at other scales.
QByteArray PlatformOn(QTemporaryFile& screen) {
    const double scale = std::max(1.0, qEnvironmentVariable("QT_SCALE_FACTOR").toDouble());
    if (!screen.open())
        return "offscreen";
    screen.write(QStringLiteral(R"({"screens":[{"name":"one","x":0,"y":0,"width":%1,"height":%2,)"
                                R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})")
                     .arg(qRound(1280 * scale))
                     .arg(qRound(720 * scale))
                     .toUtf8());
    screen.close();
    return "offscreen:configfile=" + screen.fileName().toUtf8();
}

int Run(int argc, char** argv) {
    const QString theme = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    if (theme != QLatin1String("light") && theme != QLatin1String("dark")) {
        std::cerr << "screenshots <folder> light|dark [<name of a picture>...]\n";
        return EXIT_FAILURE;
    }
    QTemporaryFile screen;
    qputenv("QT_QPA_PLATFORM", PlatformOn(screen));
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    TQtApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tidewell"));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(theme == QLatin1String("dark") ? Dark()
                                                            : QApplication::style()->standardPalette());
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    QApplication::setCursorFlashTime(0); // the caret is in every picture
    QApplication::setWindowIcon(AppIcon());

    const QStringList arguments = QCoreApplication::arguments();
    const QStringList wanted = arguments.mid(3);
    bool good = true;
    std::vector<TPicture> pictures = Pictures();
    std::ranges::move(SetpointPictures(), std::back_inserter(pictures));
    std::ranges::move(GraphPictures(), std::back_inserter(pictures));
    std::ranges::move(ServicePictures(), std::back_inserter(pictures));
    for (const TPicture& picture : pictures)
        if (wanted.isEmpty() || wanted.contains(picture.Name))
            good = Take(picture, arguments.at(1), theme) && good;
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

} // namespace tidewell::test

int main(int argc, char** argv) {
    return tidewell::test::Run(argc, argv);
}

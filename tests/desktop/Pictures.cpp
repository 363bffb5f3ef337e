// Plays pictures.txt on the program's real windows, and paints them into picture files:
//
//     screenshots <folder> light|dark [<name of a picture>...]
//
// leaves <folder>/<name>-<theme>-<scale>.png, the scale in percent as QT_SCALE_FACTOR asks for. All of them:
//
//     cmake --build --preset dev --target pictures

#include "Support.h"
#include "desktop/views/Views.h"
#include "rig/Journey.h"
#include "widgets/Icons.h"
#include "widgets/ScopeView.h"

namespace tidewell::test {

namespace {

constexpr int drawn = 400; // ms, after which the newest picture of the plot stands on the screen

QPalette Dark() {
    const QColor base(35, 35, 35), ink(230, 230, 230), grey(128, 128, 128), blue(42, 130, 218);
    QPalette palette(QColor(53, 53, 53));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, ink);
        palette.setColor(QPalette::Disabled, role, grey);
    }
    palette.setColor(QPalette::ToolTipText, ink);
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

// One case of the journey, with our extensions.
class TPainter {
  public:
    TPainter(TJourneyCase& journey, QString folder, QString theme, QStringList wanted)
        : Folder(std::move(folder)), Theme(std::move(theme)), Wanted(std::move(wanted)), Journey(journey) {
        TWorld& world = Journey.World;
        world.Edit(TWorld::SystemFile, "[NoExtensions]", "[Extensions]");
        Journey.OnStep = Journey.OnDialog = [this] {
            if (Journey.World.Program)
                Windows.Update();
        };
        Journey.OnPicture = [this](const std::string& form, const std::string& name) {
            if (Wanted.isEmpty() || Wanted.contains(QString::fromStdString(name)))
                Take(form, name);
        };
        Journey.Play();
    }

  private:
    void Take(const std::string& form, const std::string& name) {
        Windows.Update();
        for (const TForm* one : Journey.World.Forms())
            if (QWidget* const window = Windows.Of(*one); one->Name() == form && window != nullptr) {
                QApplication::setActiveWindow(window);
                QTest::qWait(drawn);
                Prepare(*window, name);
                return;
            }
        ADD_FAILURE() << name << ": " << form << " is not open";
    }
    // What a mouse does on the plot.
    void Prepare(QWidget& window, const std::string& name) {
        auto* const view = dynamic_cast<TScopeView*>(window.findChild<QWidget*>("graph"));
        if (name == "graph-bits") {
            constexpr std::size_t status = 15;
            const QPoint place = view->Plot().LegendEntryRect(status).center();
            QTest::mouseClick(view, Qt::LeftButton, {}, place);
            QMenu menu;
            FillBinaryPopup(menu, Journey.World.Program->GraphPage);
            menu.popup(view->mapToGlobal(place));
            return Save(window, name);
        }
        if (name == "channels") {
            QTimer::singleShot(drawn, [&] {
                QWidget& dialog = *QApplication::activeModalWidget();
                Save(dialog, name);
                dialog.close();
            });
            return view->ShowChannelSettings();
        }
        Save(window, name);
    }
    void Save(QWidget& window, const std::string& name) {
        const QPixmap framed = Framed(window);
        const QString file = QStringLiteral("%1/%2-%3-%4.png")
                                 .arg(Folder, QString::fromStdString(name), Theme)
                                 .arg(qRound(framed.devicePixelRatio() * 100));
        EXPECT_TRUE(framed.save(file)) << "Cannot write";
        std::cout << file.toStdString() << '\n';
    }

    QString Folder, Theme;
    QStringList Wanted; // all, if empty
    TJourney Journey;
    TWindows Windows{Journey.World};
};

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
    testing::InitGoogleTest(&argc, argv);
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
    for (TJourneyCase& one :
         ReadJourney(std::filesystem::path(TIDEWELL_SOURCE_DIR) / "tests/desktop/pictures.txt"))
        const TPainter painter(one, arguments.at(1), theme, arguments.mid(3));
    return testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

} // namespace tidewell::test

int main(int argc, char** argv) {
    return tidewell::test::Run(argc, argv);
}

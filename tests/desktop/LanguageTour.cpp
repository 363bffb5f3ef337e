#include "LanguageTour.h"

#include "Robot.h"
#include "desktop/Desktop.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QGroupBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QSaveFile>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace tidewell::test {

namespace {

constexpr int processes = 3;

QString Notes(const char* kind, int process) {
    return qEnvironmentVariable(tourVariable) + QStringLiteral("/%1%2").arg(QLatin1String(kind)).arg(process);
}

// The file is there only as a whole.
void WriteWhole(const QString& path, const QByteArray& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        std::cerr << "Cannot write " << path.toStdString() << '\n';
}

// "<window>/<widget>" or "<window>/<widget>/<part>" to the text there, shown or hidden.
class TCaptions {
  public:
    void Take(const QWidget& window) {
        Window = window.objectName();
        if (const auto* box = qobject_cast<const QMessageBox*>(&window))
            return Note(Captions.contains(QStringLiteral("MessageBox/stop")) ? "restart" : "stop",
                        box->text());
        Note("title", window.windowTitle());
        if (qobject_cast<const QFileDialog*>(&window) != nullptr)
            return; // the rest is the toolkit's own
        for (const auto* button : window.findChildren<QAbstractButton*>())
            Note(button->objectName(), button->text());
        for (const auto* label : window.findChildren<QLabel*>()) {
            if (label->objectName() == QStringLiteral("LblSetpointCount") ||
                (label->objectName().isEmpty() && label->parent()->objectName().isEmpty()))
                continue; // a number of rows, and the letters of axes
            Note(label->objectName().isEmpty() ? label->parent()->objectName() + QStringLiteral("/caption")
                                               : label->objectName(),
                 label->text());
        }
        for (const auto* group : window.findChildren<QGroupBox*>())
            Note(group->objectName(), group->title());
        for (const auto* action : window.findChildren<QAction*>())
            Note(action->objectName(), action->text());
        for (const auto* tabs : window.findChildren<QTabWidget*>())
            for (int i = 0; i < tabs->count(); ++i)
                Note(tabs->objectName() + u'/' + tabs->widget(i)->objectName(), tabs->tabText(i));
        for (const auto* grid : window.findChildren<QTableView*>())
            for (int i = 0; i < grid->model()->columnCount(); ++i)
                Note(grid->objectName() + QStringLiteral("/%1").arg(i),
                     grid->model()->headerData(i, Qt::Horizontal).toString());
    }
    QByteArray Json() const { return QJsonDocument(Captions).toJson(); }

  private:
    // What was seen first stays. Nameless parts of widgets bear no captions of the program.
    void Note(const QString& widget, const QString& text) {
        const QString place = Window + u'/' + widget;
        if (!widget.isEmpty() && !widget.startsWith(QLatin1String("qt_")) && !text.isEmpty() &&
            !Captions.contains(place))
            Captions[place] = text;
    }

    QString Window;
    QJsonObject Captions;
};

class TTour {
  public:
    explicit TTour(int process) : Process(process) {
        See("FormMain", [](QWidget&) { Press(Qt::Key_F8); });
        See("SetupForm", [](QWidget&) { Press(Qt::Key_Escape); });
        Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F11); });
        See("NabtoDevice", [](QWidget& view) { view.close(); });
        Robot.On("FormMain", [](QWidget&) { Press(Qt::Key_F2); });
        See("MessageBox", [](QWidget&) { Press(Qt::Key_Return); });
        See("OpenDialog", [](QWidget&) { Type("Aria450_english.pls\n"); });
        Robot.On("FormMain", [](QWidget& view) {
            Press(Qt::Key_F6);
            auto* const tree = view.findChild<QTreeWidget*>("SetpointTreeView");
            tree->setCurrentItem(tree->topLevelItem(0)->child(0));
            QTest::keyClick(tree, Qt::Key_Return);
        });
        See("FormMain", [](QWidget&) { Press(Qt::Key_F12); });
        const bool last = Process == processes - 1;
        See("languagedialog", [last](QWidget& view) {
            if (last)
                return Press(Qt::Key_Escape);
            for (auto* language : view.findChildren<QRadioButton*>())
                if (!language->isChecked())
                    return language->click();
        });
        if (!last) {
            Robot.On("languagedialog", [](QWidget&) { Press(Qt::Key_Return); });
            See("MessageBox", [this](QWidget&) { End(Qt::Key_Return); });
        } else {
            Robot.On("FormMain", [this](QWidget&) { End(Qt::Key_Escape); });
        }
    }

  private:
    void See(const QString& window, const TRobot::TAction& action) {
        Robot.On(window, [this, action](QWidget& view) {
            Captions.Take(view);
            action(view);
        });
    }
    // The notes stand before the key that ends the program.
    void End(Qt::Key key) {
        WriteWhole(Notes("captions", Process), Captions.Json());
        Press(key);
    }

    int Process;
    TCaptions Captions;
    TRobot Robot{[](const QString& line) {
        std::cerr << "The tour " << line.toStdString() << '\n';
        std::_Exit(EXIT_FAILURE); // no further process
    }};
};

int NumberOfThisProcess() {
    int process = 0;
    while (QFile::exists(Notes("captions", process)))
        ++process;
    return process;
}

std::unique_ptr<TTour> tour;

} // namespace

int RunLanguageTour(int argc, char** argv) {
    const int process = NumberOfThisProcess();
    // Once there is an event loop to make timers for.
    qAddPreRoutine([] { tour = std::make_unique<TTour>(NumberOfThisProcess()); });
    const int code = RunDesktop(argc, argv, {1, 0, 0, 1});
    WriteWhole(Notes("ended", process), QByteArray::number(argc));
    return code;
}

} // namespace tidewell::test

#include "Support.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace tidewell::test {

namespace {

void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

// A small installation with no link, and the program on it.
class ProgramTest : public testing::Test {
  protected:
    void Install(const QByteArray& system) {
        ASSERT_TRUE(Folder.isValid());
        QDir(Folder.path()).mkpath("cfg");
        Write(Folder.filePath("cfg/system_test.inn"), "[System]\nLanguageFile_Current=a.lng\n" + system);
        Write(Folder.filePath("cfg/a.lng"), "[HeadAppl]\nappl_title=Test\n");
        QImage logo(862, 214, QImage::Format_RGB32);
        logo.fill(Qt::darkCyan);
        logo.save(Folder.filePath("cfg/logo.png"));
    }

    void Start() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TIDEWELL_HOME", Folder.path());
        environment.insert("TIDEWELL_SCREENSHOT", Folder.filePath("shot.png"));
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        Program.setProcessEnvironment(environment);
        Program.setProcessChannelMode(QProcess::MergedChannels);
        Program.start(QCoreApplication::applicationDirPath() + "/tidewell", {"-LoginUserPW", "me;secret"});
        ASSERT_TRUE(Program.waitForStarted());
    }

    // The main form is made once it can be painted.
    void WaitForMainForm() {
        ASSERT_TRUE(WaitFor([this] { return QDir(Folder.filePath("log/systemlog")).exists(); }));
        ASSERT_TRUE(WaitFor([this] {
            Signal(SIGUSR1);
            QTest::qWait(50);
            return QFile::exists(Folder.filePath("shot.png"));
        }));
    }
    void Signal(int number) { kill(static_cast<pid_t>(Program.processId()), number); }
    QStringList LogFiles() const { return QDir(Folder.filePath("log/systemlog")).entryList(QDir::Files); }

    QTemporaryDir Folder;
    QProcess Program;
};

const char* const quiet =
    "[Port]\nPortScan=TRUE\n[Profile]\nAutoloadProfile=TRUE\n[CommInitModbus]\nDebugEnable=0\n";

} // namespace

TEST_F(ProgramTest, AnswersHelpAndVersionWithoutADisplayOrAnInstallation) {
    for (const auto& [option, answer] : {std::pair{"--help", "\n  -devid "}, {"--version", "Tidewell 1"}}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "none of these");
        environment.insert("TIDEWELL_HOME", "/nowhere");
        Program.setProcessEnvironment(environment);
        Program.start(QCoreApplication::applicationDirPath() + "/tidewell", {option});
        ASSERT_TRUE(Program.waitForFinished(30'000));
        EXPECT_EQ(Program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(Program.exitCode(), 0);
        EXPECT_TRUE(Program.readAllStandardOutput().contains(answer));
        EXPECT_EQ(Program.readAllStandardError(), "");
    }
}

TEST_F(ProgramTest, ATermSignalClosesItInOrder) {
    Install(quiet);
    Start();
    WaitForMainForm();
    // The list of processes shows it.
    QFile commandLine(QString("/proc/%1/cmdline").arg(Program.processId()));
    ASSERT_TRUE(commandLine.open(QIODevice::ReadOnly));
    const QByteArray shown = commandLine.readAll();
    EXPECT_TRUE(shown.contains("me") && !shown.contains("secret"));
    QFile::remove(Folder.filePath("shot.png"));
    Signal(SIGTERM);
    ASSERT_TRUE(Program.waitForFinished(30'000));
    EXPECT_EQ(Program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(Program.exitCode(), 0);
    EXPECT_EQ(LogFiles().filter("eventlog.log").size(), 1);
    EXPECT_EQ(LogFiles().filter("datalog").size(), 1);
    EXPECT_FALSE(QImage(Folder.filePath("shot.png")).isNull());
}

TEST_F(ProgramTest, AnInterruptAlsoEndsItWhileADialogIsOpen) {
    Install("[CommInitModbus]\nDebugEnable=0\n"); // asks for a profile
    Start();
    WaitForMainForm();
    QTest::qWait(500); // the dialog comes 200 ms after the main form
    Signal(SIGINT);
    ASSERT_TRUE(Program.waitForFinished(30'000));
    EXPECT_EQ(Program.exitCode(), 0);
    EXPECT_EQ(LogFiles().filter("eventlog.log").size(), 1);
}

TEST_F(ProgramTest, AnIncompleteInstallationIsToldAndASignalEndsIt) {
    QDir(Folder.path()).mkpath("cfg");
    Start();
    QTest::qWait(1500);
    Signal(SIGTERM);
    ASSERT_TRUE(Program.waitForFinished(30'000));
    EXPECT_EQ(Program.exitStatus(), QProcess::NormalExit);
    EXPECT_TRUE(LogFiles().isEmpty());
}

} // namespace tidewell::test

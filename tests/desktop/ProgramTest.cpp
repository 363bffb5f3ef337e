#include "Support.h"

#include <csignal>

namespace tidewell::test {

namespace {

// Starts the real program.
void Start(QProcess& process, const QString& home, const QString& platform, const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TIDEWELL_HOME", home);
    environment.insert("TIDEWELL_SCREENSHOT", home + "/shot.png");
    environment.insert("QT_QPA_PLATFORM", platform);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationDirPath() + "/tidewell", arguments);
    EXPECT_TRUE(process.waitForStarted());
}

// On an installation of its own, which has no link.
class TRealProgram {
  public:
    // Null: an installation without a system file.
    explicit TRealProgram(const char* system) {
        QDir(Folder.path()).mkpath("cfg");
        if (system != nullptr) {
            Write("cfg/system_test.inn", QByteArray("[System]\nLanguageFile_Current=a.lng\n") + system);
            Write("cfg/a.lng", "[HeadAppl]\nappl_title=Test\n");
            QImage(862, 214, QImage::Format_RGB32).save(Folder.filePath("cfg/logo.png"));
        }
        Process.setProcessChannelMode(QProcess::ForwardedChannels);
        Start(Process, Folder.path(), "offscreen", {"-LoginUserPW", "me;secret"});
    }

    // The main form is made once it can be painted.
    bool ShowsMainForm() {
        return WaitFor([this] { return QDir(Folder.filePath("log/systemlog")).exists(); }) && WaitFor([this] {
                   Signal(SIGUSR1);
                   QTest::qWait(50);
                   return QFile::exists(Screenshot());
               });
    }
    void Signal(int number) {
        const auto process = static_cast<pid_t>(Process.processId());
        if (process > 0) // 0 would be all of ours
            kill(process, number);
    }
    void ExpectEnd(qsizetype logs) {
        ASSERT_TRUE(Process.waitForFinished(30'000));
        EXPECT_EQ(Process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(LogFiles("eventlog.log"), logs);
    }
    qsizetype LogFiles(const char* part) const {
        return QDir(Folder.filePath("log/systemlog")).entryList(QDir::Files).filter(part).size();
    }
    QString Screenshot() const { return Folder.filePath("shot.png"); }

    QProcess Process;

  private:
    void Write(const char* path, const QByteArray& content) {
        QFile file(Folder.filePath(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir Folder;
};

} // namespace

TEST(ProgramTest, AnswersHelpAndVersionWithoutADisplayOrAnInstallation) {
    for (const auto& [option, answer] : {std::pair{"--help", "\n  -devid "}, {"--version", "Tidewell 1"}}) {
        QProcess program;
        Start(program, "/nowhere", "none of these", {option});
        ASSERT_TRUE(program.waitForFinished(30'000));
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_TRUE(program.readAllStandardOutput().contains(answer));
        EXPECT_EQ(program.readAllStandardError(), "");
    }
}

TEST(ProgramTest, SignalsEndItInOrder) {
    // Side by side, for the time of their start.
    const auto hangUp = std::signal(SIGHUP, SIG_IGN); // as nohup does
    TRealProgram quiet(
        "[Port]\nPortScan=TRUE\n[Profile]\nAutoloadProfile=TRUE\n[CommInitModbus]\nDebugEnable=0\n");
    std::signal(SIGHUP, hangUp);
    TRealProgram asking("[CommInitModbus]\nDebugEnable=0\n"); // for a profile
    TRealProgram incomplete(nullptr);
    ASSERT_TRUE(quiet.ShowsMainForm() && asking.ShowsMainForm());
    // The list of processes shows it.
    QFile commandLine(QString("/proc/%1/cmdline").arg(quiet.Process.processId()));
    ASSERT_TRUE(commandLine.open(QIODevice::ReadOnly));
    const QByteArray shown = commandLine.readAll();
    EXPECT_TRUE(shown.contains("me") && !shown.contains("secret"));
    QFile::remove(quiet.Screenshot());
    quiet.Signal(SIGHUP);
    EXPECT_FALSE(quiet.Process.waitForFinished(300));
    quiet.Signal(SIGTERM);
    quiet.ExpectEnd(1);
    EXPECT_EQ(quiet.LogFiles("datalog"), 1);
    EXPECT_FALSE(QImage(quiet.Screenshot()).isNull()); // as it was at the close
    QTest::qWait(500);                                 // the dialog comes 200 ms after the main form
    asking.Signal(SIGHUP);
    asking.ExpectEnd(1);
    incomplete.Signal(SIGINT); // below what it says
    incomplete.ExpectEnd(0);
}

} // namespace tidewell::test

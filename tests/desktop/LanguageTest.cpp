#include "LanguageTour.h"
#include "Support.h"
#include "core/DiskFiles.h"
#include "core/IniFile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string>

namespace tidewell::test {

namespace {

using testing::IsEmpty;

// By section and key.
using TKey = std::pair<std::string, std::string>;
using TTexts = std::map<TKey, std::string>;
using TCaptionMap = std::map<std::string, std::string>;

class LanguageTest : public testing::Test {
  protected:
    // The example installation, with nothing that would come up by itself.
    void Install() {
        ASSERT_TRUE(Folder.isValid());
        std::filesystem::copy(std::filesystem::path(TIDEWELL_SOURCE_DIR) / "installation", Home,
                              std::filesystem::copy_options::recursive);
        std::filesystem::copy(
            QCoreApplication::applicationDirPath().toStdString() + "/libnabto_client_api.so", Home);
        TIniFile system(Disk, Home / "cfg/system_hushvane.inn");
        system.WriteText("CommInitNabto", "Enabled", "FALSE");
        system.WriteText("LogAutoStart", "Enabled", "FALSE");
        system.Save(Disk);
    }
    void Tour() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TIDEWELL_HOME", Folder.path());
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert(tourVariable, Folder.path());
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program.start(QCoreApplication::applicationFilePath(), {"-option"});
        ASSERT_TRUE(program.waitForFinished(30'000));
        ASSERT_EQ(program.exitCode(), EXIT_SUCCESS);
        for (int process = 0; process < 3; ++process)
            ASSERT_TRUE(WaitFor([&] { return Exists("ended", process); }, 30'000)) << process;
    }
    bool Exists(const char* kind, int process) const { return QFile::exists(Note(kind, process)); }
    QString Note(const char* kind, int process) const {
        return Folder.filePath(QStringLiteral("%1%2").arg(QLatin1String(kind)).arg(process));
    }
    QByteArray Read(const QString& path) const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    TCaptionMap Captions(int process) const {
        TCaptionMap captions;
        const auto noted = QJsonDocument::fromJson(Read(Note("captions", process))).object();
        for (auto caption = noted.begin(); caption != noted.end(); ++caption)
            captions[caption.key().toStdString()] = caption.value().toString().toStdString();
        return captions;
    }
    TTexts Texts(const char* language) const {
        TTexts texts;
        const TIniFile file(Disk, Home / "cfg" / language);
        for (const auto& section : file.SectionNames())
            for (const auto& row : file.ReadSection(section).Rows())
                texts[{section, row.Name}] = row.Value;
        return texts;
    }

    QTemporaryDir Folder;
    std::filesystem::path Home = Folder.path().toStdString();
    TDiskFiles Disk;
};

// What is not read from the language file.
bool IsFixed(const std::string& widget, const std::string& text) {
    static const std::set<std::string> texts = {
        "SD-Card datalog", "Show Device Errorlog",    "FlashDatalog", "ErrorLog",
        "Save setpoints",  "Load setpoint from file", "ID : ",        "\u2715"};
    return texts.contains(text) || widget.starts_with("FormMain/GraphZoom") ||
           widget.starts_with("NabtoDevice/") || text.starts_with("Version : ");
}

// What the tour does not come to: messages and menus that pop up.
bool IsElsewhere(const TKey& key) {
    static const std::set<std::string> keys = {"DialogOpenDatalogFileCaption",
                                               "DialogSaveDatalogFile",
                                               "EditNotAllowed",
                                               "ErrorMissingAdobe",
                                               "TrafficButtonON",
                                               "adjustdays",
                                               "errorlogcounter",
                                               "questiondatalog"};
    return keys.contains(key.second) || key.second.starts_with("Message") ||
           key.second.starts_with("PopupMenu_");
}

} // namespace

TEST_F(LanguageTest, AllCaptionsChangeWithARestartAndBack) {
    Install();
    Tour();
    for (int process = 0; process < 3; ++process) // the options of the first start are lost
        EXPECT_EQ(Read(Note("ended", process)), process == 0 ? "2" : "1");
    const TTexts english = Texts("english.lng");
    const TTexts german = Texts("deutsch.lng");
    const TCaptionMap before = Captions(0);
    const TCaptionMap between = Captions(1);
    EXPECT_EQ(Captions(2), [&] {
        TCaptionMap again = before;
        again.erase("MessageBox/restart");
        return again;
    }());

    std::set<TKey> shown;
    for (const auto& [widget, text] : before) {
        std::set<std::string> expected;
        for (const auto& [key, value] : english)
            if (value == text) {
                shown.insert(key);
                expected.insert(german.at(key));
            }
        if ((expected.empty() && IsFixed(widget, text)) || widget == "NabtoDevice/btnDeviceID")
            expected = {text};
        const auto now = between.find(widget);
        ASSERT_NE(now, between.end()) << widget;
        EXPECT_TRUE(expected.contains(now->second)) << widget << ": " << text << " -> " << now->second;
    }
    EXPECT_EQ(before.size(), between.size());

    const std::set<std::string> sections = {"HeadAppl", "Language", "Nabtodriver", "CommDialog",
                                            "EmptyPages"};
    std::set<TKey> missing;
    for (const auto& [key, text] : english)
        if (sections.contains(key.first) && !shown.contains(key) && !IsElsewhere(key))
            missing.insert(key);
    EXPECT_THAT(missing, IsEmpty());
}

} // namespace tidewell::test

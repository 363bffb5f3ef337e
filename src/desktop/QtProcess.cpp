#include "desktop/QtProcess.h"

#include "desktop/QtText.h"

#include <QProcess>

namespace tidewell {

namespace {

QStringList ToList(const std::vector<std::string>& arguments) {
    QStringList list;
    for (const auto& argument : arguments)
        list.append(ToQt(argument));
    return list;
}

} // namespace

std::optional<std::string> TQtProcess::Run(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments,
                                           const std::filesystem::path& workingDirectory) {
    constexpr int withoutLimit = -1;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.setWorkingDirectory(PathToQt(workingDirectory));
    process.start(PathToQt(program), ToList(arguments), QIODevice::ReadOnly);
    if (!process.waitForStarted(withoutLimit))
        return std::nullopt;
    process.waitForFinished(withoutLimit);
    return process.readAll().toStdString();
}

void TQtProcess::CloseWindow(const std::string&) {}

bool TQtProcess::Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    return QProcess::startDetached(PathToQt(program), ToList(arguments));
}

} // namespace tidewell

#pragma once

#include <QString>

#include <filesystem>
#include <string>

namespace tidewell {

inline QString ToQt(const std::string& text) {
    return QString::fromStdString(text);
}
inline std::string FromQt(const QString& text) {
    return text.toStdString();
}
inline QString PathToQt(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}
inline std::filesystem::path PathFromQt(const QString& path) {
    return {path.toStdString()};
}

} // namespace tidewell

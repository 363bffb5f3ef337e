#include "Installation.h"

#include "InstallationDirectory.h"
#include "core/DiskFiles.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"

#include <gtest/gtest.h>

namespace tidewell::test {

TInstallation::TInstallation() {
    const TDiskFiles disk;
    const std::filesystem::path source = InstallationDirectory;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(source))
        if (entry.is_regular_file())
            Files.Put(Directory / entry.path().lexically_relative(source), disk.Read(entry.path()));
}

std::filesystem::path TInstallation::SystemFile() const {
    return FindSystemFile(Files, Directory);
}

std::int32_t TListRow::Integer(std::size_t field) const {
    return ToInteger(Fields.at(field));
}

const std::string& TListRow::ValueIn(const std::vector<std::string>& cycle) const {
    return cycle.at(static_cast<std::size_t>(Integer(8) - 3));
}

std::vector<std::string> Fields(const std::string& row) {
    const std::vector<std::string_view> pieces = SplitStrictly(row);
    return {pieces.begin(), pieces.end()};
}

TInstalledProfile::TInstalledProfile(TInstallation& installation, const std::string& name)
    : Profile(installation.Files), Panel(installation.Files, Time) {
    const std::filesystem::path path = installation.Directory / "profile" / name;
    Profile.Open(path);
    Profile.ReadNabtoSection(path);
    Panel.SetMpanelWorkingpath(installation.Directory);
    Panel.SetMpanelPLSpath(path);
    Panel.InitQuestionStringlistStructures();

    for (const TMDevice& device : Panel.DeviceList)
        for (std::size_t question = 0; question < device.ReadList.size(); ++question)
            for (std::size_t row = 0; row < device.ReadListText.at(question).RowCount(); ++row)
                Rows.push_back({.Fields = device.ReadListText.at(question).Row(row),
                                .Device = device.Name,
                                .QuestionFields = Fields(device.ReadList[question])});
    for (const auto& row : ReadPollQuestions(installation.Files, path).Rows()) {
        const std::vector<std::string> fields = Fields(row.Value);
        Questions.push_back({ToInteger(fields.at(0)), ToInteger(fields.at(1)), ToInteger(fields.at(2)),
                             ToInteger(fields.at(3))});
    }
}

} // namespace tidewell::test

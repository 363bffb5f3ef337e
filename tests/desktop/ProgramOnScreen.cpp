#include "ProgramOnScreen.h"

#include "Support.h"
#include "core/IniFile.h"
#include "sim/cloud/CloudConfig.h"
#include "sim/cloud/SimulatedCloud.h"

#include <iostream>
#include <stdexcept>

namespace tidewell::test {

namespace {

const std::filesystem::path root = "/opt/tidewell";

} // namespace

TProgramOnScreen::TProgramOnScreen() : Desktop(test::Application(), root) {
    Files.CurrentDirectory = root;
    const std::filesystem::path source = TIDEWELL_SOURCE_DIR;
    const std::filesystem::path installation = source / "installation";
    const TDiskFiles disk;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(installation))
        if (entry.is_regular_file())
            Files.Put(root / entry.path().lexically_relative(installation), disk.Read(entry.path()));
    Cloud = std::make_unique<TSimulatedCloud>(ReadCloudConfig(TIniFile(disk, source / "sim/cloud/cloud.ini")),
                                              [this] { return Time.Now(); });
    Nabto.SimulationFile = root / "nabto_config/simulation.ini";
    Nabto.OnReport = [](const std::string& line) { std::cerr << line << '\n'; };
    Time.OnException = [this](const std::exception& error) { Desktop.Application.OnException(error); };
}

TProgramOnScreen::~TProgramOnScreen() {
    Desktop.Dialogs.CancelAll();
    if (Program)
        Program->Finish();
    Desktop.Dialogs.DestroyViews();
    Program.reset();
    Desktop.Application.OnException = nullptr;
}

TProgram& TProgramOnScreen::Build() {
    const auto makeHttp = [this](const std::filesystem::path&) {
        return std::make_unique<TInProcessCloud>(*Cloud, Time);
    };
    Program = tidewell::Build(TPorts{Desktop.Dialogs, Time, Time, Time, Files, KHelper, Process, Application,
                                     Desktop.Pictures, makeHttp},
                              TStartOptions{root, root / "tidewell", Arguments, Tsysteminfo{1, 0, 0, 1}});
    Desktop.RegisterViews(*Program);
    Program->Start();
    return *Program;
}

void TProgramOnScreen::EditSystemFile(const std::string& from, const std::string& to) {
    std::string& text = Files.Content[SystemFile];
    const auto at = text.find(from);
    if (at == std::string::npos)
        throw std::runtime_error("The system file has no " + from);
    text.replace(at, from.size(), to);
}

} // namespace tidewell::test

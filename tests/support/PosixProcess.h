#pragma once

#include "core/ports/IProcess.h"

namespace tidewell::test {

// Runs real programs.
class TPosixProcess : public IProcess {
  public:
    int ExitCode = -1; // of the last program that ran to its end by itself

    std::optional<std::string> Run(const std::filesystem::path& program,
                                   const std::vector<std::string>& arguments,
                                   const std::filesystem::path& workingDirectory) override;
    void CloseWindow(const std::string&) override {}
    bool Start(const std::filesystem::path&, const std::vector<std::string>&) override { return false; }
};

} // namespace tidewell::test

#pragma once

#include "core/ports/IProcess.h"

namespace tidewell {

class TQtProcess : public IProcess {
  public:
    std::optional<std::string> Run(const std::filesystem::path& program,
                                   const std::vector<std::string>& arguments,
                                   const std::filesystem::path& workingDirectory) override;
    // There is no such way here that reaches every desktop.
    void CloseWindow(const std::string& title) override;
    bool Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) override;
};

} // namespace tidewell

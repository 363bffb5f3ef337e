#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

// Other programs, always run from an argument list and never through a shell.
class IProcess {
  public:
    virtual ~IProcess() = default;
    // Runs the program to its end and gives what it wrote to standard output and standard error. Nothing when
    // it could not be started.
    virtual std::optional<std::string> Run(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments,
                                           const std::filesystem::path& workingDirectory) = 0;
    // Asks the window of another program that bears this title to close; nothing where the platform has no
    // such way.
    virtual void CloseWindow(const std::string& title) = 0;
    // Starts the program and goes on; false when it could not be started.
    virtual bool Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) = 0;
};

} // namespace tidewell

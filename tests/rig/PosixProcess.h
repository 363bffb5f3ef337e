#pragma once

#include "core/ports/IProcess.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace tidewell::test {

// Runs real programs by the shell.
class TPosixProcess : public IProcess {
  public:
    int ExitCode = -1; // of the last program that ran to its end by itself

    std::optional<std::string> Run(const std::filesystem::path& program,
                                   const std::vector<std::string>& arguments,
                                   const std::filesystem::path& workingDirectory) override {
        std::string command = "cd " + Quoted(workingDirectory.string()) + " && " + Quoted(program.string());
        for (const std::string& argument : arguments)
            command += " " + Quoted(argument);
        FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
        std::string output;
        std::array<char, 255> piece{};
        while (const auto got = std::fread(piece.data(), 1, piece.size(), pipe))
            output.append(piece.data(), got);
        const int status = pclose(pipe);
        ExitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return output;
    }
    void CloseWindow(const std::string&) override {}
    bool Start(const std::filesystem::path&, const std::vector<std::string>&) override { return false; }

  private:
    // One word of the shell, whatever is in it.
    static std::string Quoted(const std::string& text) {
        std::string word = "'";
        for (const char character : text)
            word += character == '\'' ? "'\\''" : std::string(1, character);
        return word + "'";
    }
};

} // namespace tidewell::test

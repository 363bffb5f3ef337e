#include "support/PosixProcess.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace tidewell::test {

namespace {

// One word of the shell, whatever is in it.
std::string Quoted(const std::string& text) {
    std::string word = "'";
    for (const char character : text)
        word += character == '\'' ? "'\\''" : std::string(1, character);
    return word + "'";
}

} // namespace

std::optional<std::string> TPosixProcess::Run(const std::filesystem::path& program,
                                              const std::vector<std::string>& arguments,
                                              const std::filesystem::path& workingDirectory) {
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

} // namespace tidewell::test

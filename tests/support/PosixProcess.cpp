#include "support/PosixProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace tidewell::test {

std::optional<std::string> TPosixProcess::Run(const std::filesystem::path& program,
                                              const std::vector<std::string>& arguments,
                                              const std::filesystem::path& workingDirectory) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::nullopt;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, workingDirectory.c_str());
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    std::vector<std::string> texts{program.string()};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argumentList;
    argumentList.reserve(texts.size() + 1);
    for (auto& text : texts)
        argumentList.push_back(text.data());
    argumentList.push_back(nullptr);
    pid_t child = 0;
    const int failed = posix_spawn(&child, program.c_str(), &actions, nullptr, argumentList.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    std::string output;
    std::array<char, 255> piece{};
    for (ssize_t got = 0; failed == 0 && (got = read(ends[0], piece.data(), piece.size())) > 0;)
        output.append(piece.data(), static_cast<std::size_t>(got));
    close(ends[0]);
    if (failed != 0)
        return std::nullopt;
    int status = 0;
    ExitCode = waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return output;
}

} // namespace tidewell::test

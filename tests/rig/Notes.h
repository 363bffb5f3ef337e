#pragma once

#include "rig/Test.h"

namespace tidewell::test {

class TWorld;

// "/t/log/a.csv" as "log/a.csv".
std::string Shown(const std::filesystem::path& path);

// What happens beside the screen, in lines: calls to the library, the cloud and other programs, lines on
// standard error, files.
class TNotes {
  public:
    // Listens to the world's exchanges.
    explicit TNotes(TWorld& world);
    // What is not yet told comes first.
    void Tell(const std::string& line);
    void TellCalls();
    void TellFiles();
    // Counts the files as they stand as told.
    void TakeFiles();
    std::vector<std::string> TakeLines();

  private:
    TWorld& World;
    std::vector<std::string> Lines;
    std::vector<std::string> Calls;                     // not yet told
    std::map<std::filesystem::path, std::string> Files; // as last told
    std::size_t ProcessCalls = 0;
    std::size_t Errors = 0;
};

} // namespace tidewell::test

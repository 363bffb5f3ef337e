#include "tools/Scrambler.h"
#include "tools/Tool.h"

int main(int argc, char** argv) {
    return tidewell::RunTool(
        {argv, static_cast<std::size_t>(argc)}, "D <scrambled text> <key>",
        [](std::string_view scrambled, std::string_view key) {
            return "Result3:" + tidewell::UnscrambleText(scrambled, key);
        });
}

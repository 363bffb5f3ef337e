#include "tools/Scrambler.h"
#include "tools/Tool.h"

int main(int argc, char** argv) {
    return tidewell::RunTool(
        {argv, static_cast<std::size_t>(argc)}, "E <clear text> <key>",
        [](std::string_view clear, std::string_view key) {
            return "Result2:" + tidewell::ScrambleText(clear, key) + ",#END";
        });
}

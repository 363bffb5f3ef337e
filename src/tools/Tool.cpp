#include "tools/Tool.h"

#include <exception>
#include <iostream>

namespace tidewell {

int RunTool(std::span<char* const> arguments, const std::string& usage, const TToolWork& work) {
    constexpr std::size_t programTextAndKey = 3;
    if (arguments.size() != programTextAndKey) {
        std::cerr << "usage: " << usage << '\n';
        return 1;
    }
    try {
        std::cout << work(arguments[1], arguments[2]) << std::flush;
    } catch (const std::exception& error) {
        std::cerr << "error: " << error.what() << '\n';
        return 1;
    }
    if (!std::cout) {
        std::cerr << "error: cannot write the result\n";
        return 1;
    }
    return 0;
}

} // namespace tidewell

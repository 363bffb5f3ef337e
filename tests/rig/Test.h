#pragma once

#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/KvSupport.h"
#include "core/Numbers.h"
#include "core/TextFile.h"
#include "rig/FixedDialogs.h"
#include "rig/MemoryFiles.h"
#include "rig/VirtualTime.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

// What the tests of all folders use.
namespace tidewell::test {

// One of the pieces between "|" of a row's input.
inline std::string Piece(std::string_view input, std::size_t index) {
    return std::string(SplitStrictly(input, '|').at(index));
}

// Rows of "input -> output". What the function throws is its output too.
inline void ExpectRows(const std::function<std::string(std::string_view)>& function,
                       std::initializer_list<std::string_view> rows) {
    for (const std::string_view row : rows) {
        const std::size_t arrow = row.find(" -> ");
        ASSERT_NE(arrow, std::string_view::npos) << row;
        std::string output;
        try {
            output = function(row.substr(0, arrow));
        } catch (const std::exception& error) {
            output = error.what();
        }
        EXPECT_EQ(output, row.substr(arrow + 4)) << row;
    }
}

} // namespace tidewell::test

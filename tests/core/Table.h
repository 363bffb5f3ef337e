#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tidewell::test {

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

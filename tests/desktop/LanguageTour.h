#pragma once

namespace tidewell::test {

// Names the folder that a tour leaves its notes in: "captions<n>" of the n-th process, from 0 on, and
// "ended<n>" once that process has ended in order.
constexpr const char* tourVariable = "TIDEWELL_TEST_TOUR";

// Runs the real program with a robot that notes the captions of its windows. The first two processes then
// choose the other language, so that the program starts the next one; the third closes the program.
int RunLanguageTour(int argc, char** argv);

} // namespace tidewell::test

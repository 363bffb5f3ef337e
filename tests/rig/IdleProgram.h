#pragma once

#include "core/ProgramState.h"

namespace tidewell::test {

struct TIdleProgram : IProgramState {
    bool IsOpen() const override { return Open; }
    bool Open = true;
};

struct TIdleLog : ILogControl {
    void StartLog(bool, bool) override {}
    void StopLog() override { ++Stopped; }
    int Stopped = 0;
};

} // namespace tidewell::test

#pragma once

#include "link/NabtoDevice.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell::test {

// An open main form without a log, an error log or a flash datalog.
struct TIdleDeviceHost : TNabtoDevice::IHost {
    void UpdateTimerTimer() override {}
    void StopLog() override {}
    void Setup1Click() override {}
    std::string DeviceId() const override { return {}; }
    int InitLink() override { return -1; }
    void AddEventLog(const std::string&) override {}
    bool ShowButtonDevid() const override { return false; }
    bool ErrorLogVisible() const override { return false; }
    bool FormOpen() const override { return true; }
    void StopRunningLog() override {}
    std::int32_t FlashCounterAddress() const override { return 0; }
    std::string CreateDatalogHeader() const override { return {}; }
    std::filesystem::path GetFlashLogProfilepath() const override { return {}; }
    void ShowFlashDatalog(const std::filesystem::path&, const std::filesystem::path&) override {}
    std::int32_t ErrorLogOffset() const override { return 0; }
    void EvalErrorlog(const std::string&, const std::string&) override {}
};

} // namespace tidewell::test

#pragma once

#include "errorlog/ErrorLog.h"
#include "link/NabtoDevice.h"
#include "link/SetupForm.h"
#include "logging/LiveLog.h"
#include "mainform/CommandLine.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell {

class TFormMain;

// What the parts of the program ask of the main form, each through the small interface that it declares.
class TFormMainHosts {
  public:
    explicit TFormMainHosts(TFormMain& main)
        : LiveLog(main), NabtoDevice(main), SetupForm(main), CommandLine(main), ErrorLog(main) {}

    class TLiveLogHost : public TLiveLog::IHost {
      public:
        explicit TLiveLogHost(TFormMain& main) : Main(main) {}
        bool NabtoEnabled() override;
        int InitLink() override;
        void StartPolling() override;
        void StopPolling() override;
        void ShowSetpointPage() override;
        void Setup1Click() override;
        void RepaintStatusBar() override;
        bool FormOpen() override;
        void ApplyDataLine(const std::string& line) override;

      private:
        TFormMain& Main;
    };

    class TNabtoDeviceHost : public TNabtoDevice::IHost {
      public:
        explicit TNabtoDeviceHost(TFormMain& main) : Main(main) {}
        void UpdateTimerTimer() override;
        void StopLog() override;
        void Setup1Click() override;
        void AddEventLog(const std::string& line) override;
        bool ShowButtonDevid() const override;
        bool ErrorLogVisible() const override;
        bool FormOpen() const override;
        void StopRunningLog() override;
        std::int32_t FlashCounterAddress() const override;
        std::string CreateDatalogHeader() const override;
        std::filesystem::path GetFlashLogProfilepath() const override;
        void ShowFlashDatalog(const std::filesystem::path& profile,
                              const std::filesystem::path& file) override;
        std::int32_t ErrorLogOffset() const override;
        void EvalErrorlog(const std::string& wordList) override;

      private:
        TFormMain& Main;
    };

    class TSetupFormHost : public TSetupForm::IHost {
      public:
        explicit TSetupFormHost(TFormMain& main) : Main(main) {}
        TApiClient& ApiClient() override;
        void SetDeviceId(const std::string& device) override;
        void TestProfileNabto() override;
        void RepaintStatusBar() override;

      private:
        TFormMain& Main;
    };

    class TCommandLineActions : public ICommandLineActions {
      public:
        explicit TCommandLineActions(TFormMain& main) : Main(main) {}
        void InitDevice(const std::string& devid) override;
        void SetAccessToken(const std::string& jwt) override;
        void ShowEEpromPanel() override;
        void ShowFlashPanel() override;
        void EnableContineousUpdate() override;
        void EnableExtendedVersionInfo() override;

      private:
        TFormMain& Main;
    };

    class TErrorLogHost : public TErrorLog::IHost {
      public:
        explicit TErrorLogHost(TFormMain& main) : Main(main) {}
        void StopLog() override;
        void StartLog(bool questionEnable, bool clearData) override;

      private:
        TFormMain& Main;
    };

    TLiveLogHost LiveLog;
    TNabtoDeviceHost NabtoDevice;
    TSetupFormHost SetupForm;
    TCommandLineActions CommandLine;
    TErrorLogHost ErrorLog;
};

} // namespace tidewell

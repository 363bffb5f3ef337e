#pragma once

#include "errorlog/ErrorLog.h"
#include "link/NabtoDevice.h"
#include "link/SetupForm.h"
#include "logging/DatalogReader.h"
#include "logging/LiveLog.h"
#include "setpoints/InputDialog.h"
#include "setpoints/ReadBack.h"
#include "setpoints/SetpointPage.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace tidewell {

class TFormMain;

// What the parts of the program ask of the main form, each through the small interface that it declares.
class TFormMainHosts {
  public:
    explicit TFormMainHosts(TFormMain& main)
        : LiveLog(main), NabtoDevice(main), SetupForm(main), SetpointPage(main), ReadBack(main),
          InputDialog(main), Datalog(main), ErrorLog(main) {}

    class TLiveLogHost : public TLiveLog::IHost {
      public:
        explicit TLiveLogHost(TFormMain& main) : Main(main) {}
        bool NabtoEnabled() override;
        int InitLink() override;
        void StartPolling() override;
        void StopPolling() override;
        bool Polls() override;
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
        std::string DeviceId() const override;
        int InitLink() override;
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
        void EvalErrorlog(const std::string& wordList, const std::string& remark) override;

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

    class TErrorLogHost : public TErrorLog::IHost {
      public:
        explicit TErrorLogHost(TFormMain& main) : Main(main) {}
        void StopLog() override;
        void StartLog(bool questionEnable, bool clearData) override;

      private:
        TFormMain& Main;
    };

    class TSetpointPageHost : public TSetpointPage::IHost {
      public:
        explicit TSetpointPageHost(TFormMain& main) : Main(main) {}
        bool DatalogOn() const override;
        bool DatalogFileOpen() const override;
        std::string LastDatalogLine() const override;
        std::string CurrentDataString() const override;
        std::size_t DatalogCount() const override;

      private:
        TFormMain& Main;
    };

    class TReadBackHost : public TReadBack::IHost {
      public:
        explicit TReadBackHost(TFormMain& main) : Main(main) {}
        void StartLog(bool questionEnable, bool clearData) override;
        void StopLog() override;
        bool FormOpen() const override;

      private:
        TFormMain& Main;
    };

    class TInputDialogHost : public TInputDialog::IHost {
      public:
        explicit TInputDialogHost(TFormMain& main) : Main(main) {}
        void RepaintStatusBar() override;

      private:
        TFormMain& Main;
    };

    class TDatalogHost : public IDatalogHost {
      public:
        explicit TDatalogHost(TFormMain& main) : Main(main) {}
        void StopLog() override;
        void OpenProfile(const std::filesystem::path& path) override;
        bool FormOpen() const override;

      private:
        TFormMain& Main;
    };

    TLiveLogHost LiveLog;
    TNabtoDeviceHost NabtoDevice;
    TSetupFormHost SetupForm;
    TSetpointPageHost SetpointPage;
    TReadBackHost ReadBack;
    TInputDialogHost InputDialog;
    TDatalogHost Datalog;
    TErrorLogHost ErrorLog;
};

} // namespace tidewell

#pragma once

#include "core/ports/IHttp.h"
#include "core/ports/IWait.h"
#include "sim/cloud/CloudConfig.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace tidewell {

struct TCloudRequest {
    std::string Method;
    std::string Path;          // with the prefix "/api/v1.2"
    std::string Authorization; // whole header value
    std::string Body;
};

struct TCloudReply {
    int Code = 200;
    std::string Body;
    std::string Authorization; // empty: no such header
    int DelayMs = 0;           // what the transport has to wait before it replies
};

// The maker's cloud as the program sees it, without sockets. Tokens look like JWTs; each login makes one and
// each keepAlive replaces it, so that the former one is refused from then on. Safe to use from several
// threads.
class TSimulatedCloud {
  public:
    using TNow = std::function<std::chrono::system_clock::time_point()>;

    explicit TSimulatedCloud(TCloudConfig config, TNow now = std::chrono::system_clock::now);

    TCloudReply Handle(const TCloudRequest& request);

    void SetFaults(const TCloudFaults& faults);
    // Users, devices, faults and what tokens are good for; the tokens that were given out stay.
    void SetConfig(const TCloudConfig& config);
    std::size_t RequestCount() const;

  private:
    struct TSession {
        std::string User;
        std::chrono::system_clock::time_point Opened;
        int Requests = 0;
    };
    using TSessions = std::map<std::string, TSession, std::less<>>; // by header value

    TCloudReply Route(const TCloudRequest& request);
    TCloudReply Login(const TCloudRequest& request);
    TCloudReply Identity(const TCloudUser& user) const;
    TCloudReply Device(const TCloudUser& user, std::string_view path) const;
    TSessions::iterator FindSession(const TCloudRequest& request);
    std::string OpenSession(const std::string& user);
    bool FaultApplies(const TCloudRequest& request) const;

    mutable std::mutex Guard;
    TCloudConfig Config;
    TNow Now;
    TSessions Sessions;
    std::size_t Requests = 0;
};

// The cloud as the program's own port, with no network between. A slow reply is waited for with Sleep; one
// slower than the request's time-out counts as none.
class TInProcessCloud : public IHttp {
  public:
    TInProcessCloud(TSimulatedCloud& cloud, IWait& wait) : Cloud(cloud), Wait(wait) {}

    bool Connected = true; // false: nothing listens there

    THttpReply Exchange(const THttpRequest& request) override;

  private:
    TSimulatedCloud& Cloud;
    IWait& Wait;
};

} // namespace tidewell

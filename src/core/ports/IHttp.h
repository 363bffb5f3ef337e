#pragma once

#include "core/Numbers.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

struct THttpRequest {
    std::string Method; // "GET" or "POST"
    std::string Url;
    std::vector<std::pair<std::string, std::string>> Headers;
    std::string Body;
    // The longest that it may take to connect, and altogether; connecting includes the look-up of the host.
    std::chrono::milliseconds ConnectTimeout = std::chrono::seconds(20);
    std::chrono::milliseconds WholeTimeout = std::chrono::seconds(60);
};

struct THttpReply {
    int Code = -1;      // -1: there was no reply at all
    std::string Reason; // the status line, "HTTP/1.1 200 OK"
    std::string Error;  // why there was no reply; empty otherwise
    std::string Body;
    std::vector<std::pair<std::string, std::string>> Headers;

    // First header of that name, compared without regard to case; empty if there is none.
    std::string Header(const std::string& name) const {
        for (const auto& [key, value] : Headers)
            if (SameText(key, name))
                return value;
        return {};
    }
};

inline THttpReply NoReply(std::string why) {
    THttpReply reply;
    reply.Error = std::move(why);
    return reply;
}

// One complete HTTPS exchange on a connection of its own. It blocks, and does not throw.
class IHttp {
  public:
    virtual ~IHttp() = default;
    virtual THttpReply Exchange(const THttpRequest& request) = 0;
};

} // namespace tidewell

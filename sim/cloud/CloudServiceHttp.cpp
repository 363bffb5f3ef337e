#include "sim/cloud/CloudServiceHttp.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace tidewell {

namespace {

std::string PathOf(std::string_view url) {
    const std::size_t scheme = url.find("://");
    const std::size_t path = url.find('/', scheme == std::string_view::npos ? 0 : scheme + 3);
    return path == std::string_view::npos ? "/" : std::string(url.substr(path));
}

THttpReply NoReply(std::string why) {
    THttpReply reply;
    reply.Error = std::move(why);
    return reply;
}

} // namespace

THttpReply TCloudServiceHttp::Exchange(const THttpRequest& request) {
    if (!Connected)
        return NoReply("Failed to connect");
    THttpReply sent; // for its look-up of headers
    sent.Headers = request.Headers;
    const TCloudReply answer =
        Service.Handle({request.Method, PathOf(request.Url), sent.Header("Authorization"), request.Body});
    if (answer.DelayMs > request.WholeTimeout.count()) {
        const auto limit = static_cast<int>(request.WholeTimeout.count());
        Wait.Sleep(limit);
        return NoReply("Operation timed out after " + std::to_string(limit) + " milliseconds");
    }
    if (answer.DelayMs > 0)
        Wait.Sleep(answer.DelayMs);
    THttpReply reply;
    reply.Code = answer.Code;
    reply.Reason = "HTTP/1.1 " + std::to_string(answer.Code) + " " + std::string(ReasonPhrase(answer.Code));
    reply.Body = answer.Body;
    if (!answer.Authorization.empty())
        reply.Headers.emplace_back("Authorization", answer.Authorization);
    return reply;
}

} // namespace tidewell

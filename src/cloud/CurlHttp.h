#pragma once

#include "core/ports/IHttp.h"

#include <cstddef>
#include <filesystem>

namespace tidewell {

struct TCurlSettings {
    std::filesystem::path CaFile;                     // PEM, trusted alone; empty: the system's trust store
    std::size_t MaxReplySize = std::size_t{16} << 20; // bytes of headers and body
};

// HTTPS by libcurl. Only https addresses, certificate and host name always checked, redirects returned and
// not followed. A proxy is taken from the environment as usual, but never for this machine itself. A reply
// that was cut short counts as none.
class TCurlHttp : public IHttp {
  public:
    explicit TCurlHttp(TCurlSettings settings = {});
    THttpReply Exchange(const THttpRequest& request) override;

  private:
    TCurlSettings Settings;
};

} // namespace tidewell

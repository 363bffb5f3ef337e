#pragma once

#include "core/ports/IHttp.h"
#include "core/ports/IWait.h"
#include "sim/cloud/CloudService.h"

#include <string>

namespace tidewell {

// The service as the program's own port, with no network between. A slow reply is waited for with Sleep; one
// slower than the request's time-out counts as none.
class TCloudServiceHttp : public IHttp {
  public:
    TCloudServiceHttp(TCloudService& service, IWait& wait) : Service(service), Wait(wait) {}

    bool Connected = true; // false: nothing listens there

    THttpReply Exchange(const THttpRequest& request) override;

  private:
    TCloudService& Service;
    IWait& Wait;
};

} // namespace tidewell

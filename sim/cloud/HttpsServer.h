#pragma once

#include "sim/cloud/Certificates.h"
#include "sim/cloud/SimulatedCloud.h"

#include <memory>

namespace tidewell {

// The cloud behind HTTPS on 127.0.0.1, answering on threads of its own. Cloud and certificates must
// outlive it.
class THttpsServer {
  public:
    // Port 0 takes any free one. Throws TError when it cannot listen there.
    THttpsServer(TSimulatedCloud& cloud, const TThrowAwayCertificates& certificates, int port);
    // Cuts slow replies short and waits for the threads.
    ~THttpsServer();

    int Port() const;

  private:
    class TImpl;
    std::unique_ptr<TImpl> Impl;
};

} // namespace tidewell

#pragma once

#include "cloud/ApiClient.h"
#include "core/LanguageTexts.h"
#include "core/ports/ITimers.h"
#include "link/NabtoClientApi.h"

#include <memory>
#include <string>

namespace tidewell {

struct TDeviceServices;

// Lines of the event log about the link.
struct TLinkTexts : TOwnTexts {
    TLinkTexts() : TOwnTexts("Link") {}
    TOwnText NotLinked{*this, "NotLinked", "No link to the device"}; // its address and the cause follow
    TOwnText NotSignedIn{*this, "NotSignedIn", "nobody is signed in"};
    TOwnText NotLocal{*this, "NotLocal",
                      "in an offline session it must have been found on the local network"};
    TOwnText NoUserName{*this, "NoUserName", "the service gave no user name"};
    TOwnText InUse{*this, "InUse", "a running action keeps another device"};
    // The library's reason follows.
    TOwnText SessionLost{*this, "SessionLost", "The session has ended and is opened anew"};
    TOwnText SessionBack{*this, "SessionBack", "The session is open again"};
    // The library's reason follows; it is tried again.
    TOwnText SessionNotBack{*this, "SessionNotBack", "The session cannot be opened"};
    TOwnText NoAnswer{*this, "NoAnswer", "the device does not answer"};
};

// Opens a session anew that the library has ended, as it does after a suspend or a change of network, and
// pings the device once. While it cannot be opened it is tried again from time to time.
class TSessionKeeper {
  public:
    TSessionKeeper(const TDeviceServices& services, const TLinkTexts& texts);
    ~TSessionKeeper();
    TSessionKeeper(const TSessionKeeper&) = delete;
    TSessionKeeper& operator=(const TSessionKeeper&) = delete;

    // From now on the session that stands, which was opened with these.
    void Keep(const TCredentials& credentials);

  private:
    void SessionGone(TNabtoStatus status);
    void timerReopenTimer();

    const TDeviceServices& Services;
    const TLinkTexts& Texts;
    TCredentials Credentials;
    std::unique_ptr<ITimer> timerReopen; // enabled from the loss on until the session stands again
    bool Told = false;                   // that it cannot be opened
    bool GoneAgain = false;              // since the last try
};

} // namespace tidewell

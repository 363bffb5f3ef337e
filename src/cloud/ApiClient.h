#pragma once

#include "core/controls/Control.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IHttp.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace tidewell {

class IProgramState;

// The Nabto identity of a device or of an offline session; not the person's login.
struct TCredentials {
    std::string Username;
    std::string Password;
};

struct TCloudAddress {
    std::string Host;
    int Port = 4161;
};

// The maker's cloud API: signs the user in, keeps the token alive and gets the Nabto identity of a device.
// Every operation is one blocking exchange and throws nothing. Results: 0 done; -1 any failure; -2 wrong user
// name or password; -3 in Login no right to use the program, elsewhere not logged in.
class TApiClient {
  public:
    static constexpr std::size_t PermissionCount = 64;

    // UseService comes before all that asks the service. Once the program is closed no call is made.
    TApiClient(const IProgramState& program, IDialogs& dialogs) : Program(program), Dialogs(dialogs) {}
    void UseService(IHttp& http, const TCloudAddress& address);

    std::string token; // whole value of the Authorization header, "Bearer " and the JWT
    std::array<bool, PermissionCount> permissions{}; // of the last login; all false with SetAccessToken
    bool _isLoggedIn = false;
    bool _isLocalSession = false; // an offline session stands, until the program ends
    TCredentials _creds;          // of the offline session
    std::vector<std::string> debugLines;
    std::string LastFailure; // status line or reason, when the last exchange was not done; else empty
    TEvent<const std::string&> OnNoConnection; // the server gave no reply at all, for that reason
    TEvent<> OnNoToken;                        // a login that worked gave none

    // Shows a box when there is no connection or the server refuses with another code than 401. A token of
    // another user is dropped, whatever comes of it.
    int Login(const std::string& username, const std::string& password);
    int Logout();
    // deviceID: the 12 digits; other characters than digits and "-" are percent-encoded. Refused, with empty
    // credentials and no exchange, in an offline session; in every other failure credentials stay as they
    // were.
    int GetNabtoUserInfo(const std::string& deviceID, TCredentials& credentials);
    int BeginOfflineSession();
    int GetOfflineSessionCredentials(TCredentials& credentials) const;
    // Nobody waits for it, so it gives up after a few seconds.
    int KeepAlive();
    // Blank text changes nothing.
    void SetAccessToken(const std::string& jwt);
    bool CanUseDatalogger() const;

  private:
    THttpReply Exchange(const THttpRequest& request);
    THttpReply Call(const std::string& method, const std::string& url, const std::string& body,
                    bool authorize, std::chrono::milliseconds limit = THttpRequest().WholeTimeout);
    int LoginReply(const THttpReply& reply);
    // Notes the line, behind the other one where nobody is logged in. The result.
    int Refused(const THttpReply& reply, const char* notLoggedIn, const std::string& line);
    int FetchIdentity(const std::string& path, TCredentials& credentials);

    const IProgramState& Program;
    IHttp* Http = nullptr;
    IDialogs& Dialogs;
    std::string TokenUser; // whose token it is; empty for one that was handed in
    bool HostKnown = false;
    std::string BaseUrl;
};

} // namespace tidewell

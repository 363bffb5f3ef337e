#include "cloud/CurlHttp.h"

#include "cloud/ApiClient.h"
#include "core/DiskFiles.h"
#include "core/IniFile.h"
#include "sim/cloud/Certificates.h"
#include "sim/cloud/HttpsServer.h"
#include "sim/cloud/SimulatedCloud.h"
#include "support/IdleProgram.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <utility>

namespace tidewell::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// The stand-in behind a real socket on a free port, and a folder for the authority's file.
struct CurlHttp : testing::Test {
    std::filesystem::path Folder =
        std::filesystem::temp_directory_path() / ("tidewell_cloud_tests_" + std::to_string(getpid()));
    TThrowAwayCertificates Certificates;
    TSimulatedCloud Service{ReadCloudConfig(TIniFile(TDiskFiles(), EXAMPLE_CLOUD_INI))};
    std::unique_ptr<THttpsServer> Server = std::make_unique<THttpsServer>(Service, Certificates, 0);

    CurlHttp() { std::filesystem::create_directories(Folder); }
    ~CurlHttp() override { std::filesystem::remove_all(Folder); }

    std::filesystem::path Write(const std::string& name, const std::string& text) const {
        std::ofstream(Folder / name) << text;
        return Folder / name;
    }
    TCurlSettings Trusting() const {
        TCurlSettings settings;
        settings.CaFile = Write("ca.pem", Certificates.AuthorityPem());
        return settings;
    }
    std::string Url(const std::string& host = "localhost") const {
        return "https://" + host + ":" + std::to_string(Server->Port()) + "/api/v1.2/Nabtouser";
    }
    // Expects that there is no reply, and gives the reason.
    static std::string Failure(const TCurlSettings& settings, const THttpRequest& request) {
        const THttpReply reply = TCurlHttp(settings).Exchange(request);
        EXPECT_EQ(reply.Code, -1);
        EXPECT_EQ(reply.Reason + reply.Body, "");
        EXPECT_TRUE(reply.Headers.empty());
        return reply.Error;
    }
};

TEST_F(CurlHttp, TrustsOnlyTheGivenAuthority) {
    const THttpRequest request{"GET", Url(), {}, {}};
    const std::size_t before = Service.RequestCount();

    TCurlSettings settings; // the system's store, if there is one
    EXPECT_THAT(Failure(settings, request), HasSubstr("certificate"));
    settings.CaFile = Write("other.pem", TThrowAwayCertificates().AuthorityPem());
    EXPECT_THAT(Failure(settings, request),
                AllOf(HasSubstr("SSL certificate problem"), HasSubstr(settings.CaFile.string()),
                      HasSubstr(request.Url)));
    for (const auto& bad :
         {Folder / "missing.pem", Write("empty.pem", ""), Write("text.pem", "no PEM\n"), Folder}) {
        settings.CaFile = bad;
        EXPECT_THAT(Failure(settings, request),
                    HasSubstr("the CA file \"" + bad.string() + "\" cannot be read or holds no certificate"));
    }
    EXPECT_EQ(Service.RequestCount(), before);
    EXPECT_EQ(TCurlHttp(Trusting()).Exchange(request).Code, 401);
}

TEST_F(CurlHttp, RefusesAnotherHostName) {
    const TThrowAwayCertificates elsewhere({"api.example"});
    const THttpsServer server(Service, elsewhere, 0);
    TCurlSettings settings;
    settings.CaFile = Write("elsewhere.pem", elsewhere.AuthorityPem());
    for (const std::string host : {"localhost", "127.0.0.1"}) {
        const std::string url = "https://" + host + ":" + std::to_string(server.Port()) + "/";
        EXPECT_THAT(Failure(settings, {"GET", url, {}, {}}), HasSubstr("subject name"));
        EXPECT_EQ(TCurlHttp(Trusting()).Exchange({"GET", Url(host), {}, {}}).Code, 401);
    }
    EXPECT_EQ(Service.RequestCount(), 2U);
}

TEST_F(CurlHttp, TellsWhyThereIsNoReply) {
    TCurlSettings settings = Trusting();
    const std::string url = Url();
    EXPECT_THAT(Failure(settings, {"GET", "http" + url.substr(5), {}, {}}), HasSubstr("http"));
    EXPECT_THAT(Failure(settings, {"GET", "https://:4161/", {}, {}}), HasSubstr("URL"));
    EXPECT_THAT(Failure(settings, {"PUT", url, {}, {}}), HasSubstr("PUT"));
    for (const std::string end : {"\r\nX-Admin: 1", "\n", "\x1B", "\x7F"}) {
        for (const auto& [name, value] :
             {std::pair<std::string, std::string>{"Authorization", "a" + end}, {"X" + end, "a"}}) {
            EXPECT_THAT(Failure(settings, {"GET", url, {{name, value}}, {}}),
                        HasSubstr("header " + name + " has a control character"));
        }
    }
    EXPECT_EQ(Service.RequestCount(), 0U);

    settings.MaxReplySize = 100;
    EXPECT_THAT(Failure(settings, {"GET", url, {}, {}}), HasSubstr("larger than 100 bytes"));
    Server.reset();
    EXPECT_THAT(Failure(settings, {"GET", url, {}, {}}), HasSubstr("connect"));
}

TEST_F(CurlHttp, PassesTheProxyByForThisMachineAlone) {
    for (const char* name : {"NO_PROXY", "no_proxy"}) {
        ::unsetenv(name);
    }
    ::setenv("https_proxy", "http://127.0.0.1:1", 1);
    const std::string far = "https://localhost.example.com:" + std::to_string(Server->Port()) + "/";
    EXPECT_THAT(Failure(Trusting(), {"GET", far, {}, {}}), HasSubstr("127.0.0.1 port 1 "));
    for (const std::string host : {"localhost", "127.0.0.1"}) {
        EXPECT_EQ(TCurlHttp(Trusting()).Exchange({"GET", Url(host), {}, {}}).Code, 401);
    }
    ::unsetenv("https_proxy");
}

TEST_F(CurlHttp, CutsAReplyThatHangs) {
    TCloudFaults faults;
    faults.DelayMs = 600000;
    Service.SetFaults(faults);
    THttpRequest request{"GET", Url(), {}, {}};
    request.WholeTimeout = std::chrono::milliseconds(300);
    EXPECT_THAT(Failure(Trusting(), request), HasSubstr("timed out"));
}

TEST_F(CurlHttp, DoesNotFollowARedirect) {
    TCloudFaults faults;
    faults.RefuseCode = 302;
    Service.SetFaults(faults);
    const THttpReply reply = TCurlHttp(Trusting()).Exchange({"GET", Url(), {}, {}});
    EXPECT_EQ(reply.Code, 302);
    EXPECT_EQ(reply.Reason, "HTTP/1.1 302 Found");
    EXPECT_EQ(Service.RequestCount(), 1U);
}

TEST_F(CurlHttp, CarriesTheClientThroughItsWholeLife) {
    TCurlHttp http(Trusting());
    TScriptedDialogs dialogs;
    const TIdleProgram program;
    TApiClient client(program, dialogs);
    client.UseService(http, {"localhost", Server->Port()});
    TCredentials credentials;

    EXPECT_EQ(client.KeepAlive(), -3); // with an empty Authorization
    EXPECT_EQ(client.Login("service", "tidewéll"), -2);
    ASSERT_EQ(client.Login("service", "tidewell"), 0);
    const std::string first = client.token;
    EXPECT_EQ(client.KeepAlive(), 0);
    EXPECT_NE(client.token, first);
    EXPECT_EQ(client.GetNabtoUserInfo("410000000001", credentials), 0);
    EXPECT_EQ(credentials.Password, "7d0f3c52a91e");
    EXPECT_EQ(client.GetNabtoUserInfo("410000000003", credentials), -1);
    EXPECT_THAT(client.debugLines.back(), HasSubstr("403 HTTP/1.1 403 Forbidden"));
    EXPECT_EQ(client.BeginOfflineSession(), 0);
    client.token = first;
    EXPECT_EQ(client.KeepAlive(), -3);

    const std::string refusal = "ERROR: Could not authenticate. ResponseCode: 400 HTTP/1.1 400 Bad Request";
    dialogs.ExpectMessage(refusal + "    EXCEPTION: HTTP/1.1 400 Bad Request");
    EXPECT_EQ(client.Login("service", "tide\"well"), -1);
    EXPECT_EQ(client.Logout(), -3);
    Server.reset();
    dialogs.ExpectMessage("No connection to server");
    EXPECT_EQ(client.Login("service", "tidewell"), -1);
}

TEST_F(CurlHttp, SecondServerOnTheSamePortFails) {
    EXPECT_THROW(THttpsServer(Service, Certificates, Server->Port()), std::exception);
}

} // namespace
} // namespace tidewell::test

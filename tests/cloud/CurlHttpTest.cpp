#include "cloud/CurlHttp.h"

#include "rig/Test.h"
#include "sim/cloud/Certificates.h"
#include "sim/cloud/HttpsServer.h"
#include "sim/cloud/SimulatedCloud.h"

#include <unistd.h>

#include <fstream>

namespace tidewell::test {
namespace {

using testing::HasSubstr;

// The stand-in behind a real socket on a free port, and a folder for the authority's file.
struct CurlHttp : testing::Test {
    std::filesystem::path Folder =
        std::filesystem::temp_directory_path() / ("tidewell_cloud_tests_" + std::to_string(getpid()));
    TThrowAwayCertificates Certificates;
    TSimulatedCloud Service{ReadCloudConfig(TIniFile(TDiskFiles(), EXAMPLE_CLOUD_INI))};
    THttpsServer Server{Service, Certificates, 0};

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
        return "https://" + host + ":" + std::to_string(Server.Port()) + "/api/v1.2/Nabtouser";
    }
    // Expects that there is no reply, and gives the reason.
    static std::string Failure(const TCurlSettings& settings, const THttpRequest& request) {
        const THttpReply reply = TCurlHttp(settings).Exchange(request);
        EXPECT_EQ(std::to_string(reply.Code) + reply.Reason + reply.Body, "-1");
        return reply.Error;
    }
};

TEST_F(CurlHttp, TrustsOnlyTheGivenAuthorityAndItsHostName) {
    const THttpRequest request{"GET", Url(), {}, {}};
    TCurlSettings settings; // the system's store, if there is one
    EXPECT_THAT(Failure(settings, request), HasSubstr("certificate"));
    settings.CaFile = Write("other.pem", TThrowAwayCertificates().AuthorityPem());
    EXPECT_THAT(Failure(settings, request),
                HasSubstr(request.Url + ", checked against the CA file \"" + settings.CaFile.string()));
    settings.CaFile = Write("text.pem", "no PEM\n");
    EXPECT_THAT(Failure(settings, request), HasSubstr("the CA file \"" + settings.CaFile.string() +
                                                      "\" cannot be read or holds no certificate"));
    const TThrowAwayCertificates elsewhere({"api.example"});
    const THttpsServer server(Service, elsewhere, 0);
    settings.CaFile = Write("elsewhere.pem", elsewhere.AuthorityPem());
    const std::string url = "https://localhost:" + std::to_string(server.Port()) + "/";
    EXPECT_THAT(Failure(settings, {"GET", url, {}, {}}), HasSubstr("subject name"));
    EXPECT_EQ(Service.RequestCount(), 0U);
}

TEST_F(CurlHttp, TellsWhyThereIsNoReply) {
    TCurlSettings settings = Trusting();
    const std::string url = Url();
    EXPECT_THAT(Failure(settings, {"GET", "http" + url.substr(5), {}, {}}), HasSubstr("http"));
    EXPECT_THAT(Failure(settings, {"GET", "https://:4161/", {}, {}}), HasSubstr("https://:4161/: URL"));
    for (const std::string end : {"\r\nX-Admin: 1", "\x1F", "\x7F"})
        for (const auto& [name, value] :
             {std::pair<std::string, std::string>{"Authorization", "a" + end}, {"X" + end, "a"}})
            EXPECT_THAT(Failure(settings, {"GET", url, {{name, value}}, {}}),
                        HasSubstr("header " + name + " has a control character"));
    settings.MaxReplySize = 100;
    EXPECT_THAT(Failure(settings, {"GET", url, {}, {}}), HasSubstr("larger than 100 bytes"));
    TCloudFaults faults;
    faults.DelayMs = 600000;
    Service.SetFaults(faults);
    THttpRequest hanging{"GET", url, {}, {}};
    hanging.WholeTimeout = std::chrono::milliseconds(300);
    EXPECT_THAT(Failure(Trusting(), hanging), HasSubstr("timed out"));
}

TEST_F(CurlHttp, PassesTheProxyByForThisMachineAlone) {
    for (const char* name : {"NO_PROXY", "no_proxy"})
        ::unsetenv(name);
    ::setenv("https_proxy", "http://127.0.0.1:1", 1);
    const std::string port = ":" + std::to_string(Server.Port()) + "/";
    for (const std::string far : {"localhost.example.com", "127.0.0.1.example.com", "192.0.2.1"})
        EXPECT_THAT(Failure(Trusting(), {"GET", "https://" + far + port, {}, {}}),
                    HasSubstr("127.0.0.1 port 1 "));
    for (const std::string host : {"localhost", "LOCALHOST", "127.0.0.1"})
        EXPECT_EQ(TCurlHttp(Trusting()).Exchange({"GET", Url(host), {}, {}}).Code, 401) << host;
    ::unsetenv("https_proxy");
}

TEST_F(CurlHttp, CarriesRequestsAndRepliesAsTheyAre) {
    const auto post = [this](const std::string& token) {
        const std::string url = "https://localhost:" + std::to_string(Server.Port()) + "/api/v1.2/login";
        const std::string body = R"({"Username":"service","Password":"tidewell"})";
        return TCurlHttp(Trusting()).Exchange({"POST", url, {{"Authorization", token}}, body});
    };
    const THttpReply login = post(""); // a header with no value
    EXPECT_EQ(login.Code, 200);
    EXPECT_EQ(login.Reason + login.Error, "HTTP/1.1 200 OK");
    EXPECT_THAT(login.Body, HasSubstr("PermissionFlags"));
    EXPECT_THAT(login.Header("authorization"), testing::StartsWith("Bearer "));
    TCloudFaults faults;
    faults.RefuseCode = 302;
    Service.SetFaults(faults);
    EXPECT_EQ(post("x").Reason, "HTTP/1.1 302 Found"); // not followed
    EXPECT_EQ(Service.RequestCount(), 2U);
}

} // namespace
} // namespace tidewell::test

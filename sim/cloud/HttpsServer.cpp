#include "sim/cloud/HttpsServer.h"

#include "core/Errors.h"

#include <httplib.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace tidewell {

namespace {

constexpr const char* Address = "127.0.0.1";
constexpr std::size_t MaxRequestSize = std::size_t{1} << 20;

// A second server on the same port has to fail, so the port is not shared.
void SetSocketOptions(socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
}

} // namespace

class THttpsServer::TImpl {
  public:
    TImpl(TSimulatedCloud& cloud, const TThrowAwayCertificates& certificates, int port)
        : Cloud(cloud), Server(&certificates.ServerCertificate(), &certificates.ServerKey()) {
        if (!Server.is_valid())
            throw TError("The server certificate was not accepted");
        Server.set_socket_options(SetSocketOptions);
        Server.set_keep_alive_max_count(1);
        Server.set_payload_max_length(MaxRequestSize);
        const auto answer = [this](const httplib::Request& request, httplib::Response& response) {
            Answer(request, response);
        };
        Server.Get(".*", answer);
        Server.Post(".*", answer);
        BoundPort =
            port == 0 ? Server.bind_to_any_port(Address) : (Server.bind_to_port(Address, port) ? port : -1);
        if (BoundPort <= 0)
            throw TError(std::string("Cannot listen on ") + Address + ":" + std::to_string(port));
        Listener = std::thread([this] {
            Server.listen_after_bind();
            Ended = true;
        });
        // Server.stop() does nothing before the loop runs.
        while (!Server.is_running() && !Ended)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }

    ~TImpl() {
        {
            const std::lock_guard lock(Guard);
            Stopping = true;
        }
        Woken.notify_all();
        Server.stop();
        Listener.join();
    }

    TImpl(const TImpl&) = delete;
    TImpl& operator=(const TImpl&) = delete;

    int Port() const { return BoundPort; }

  private:
    void Answer(const httplib::Request& request, httplib::Response& response) {
        const TCloudReply reply = Cloud.Handle(
            {request.method, request.path, request.get_header_value("Authorization"), request.body});
        if (reply.DelayMs > 0) {
            std::unique_lock lock(Guard);
            Woken.wait_for(lock, std::chrono::milliseconds(reply.DelayMs), [this] { return Stopping; });
        }
        response.status = reply.Code;
        response.set_content(reply.Body, "application/json");
        if (!reply.Authorization.empty())
            response.set_header("Authorization", reply.Authorization);
    }

    TSimulatedCloud& Cloud;
    httplib::SSLServer Server;
    int BoundPort = -1;
    std::mutex Guard;
    std::condition_variable Woken;
    bool Stopping = false;
    std::atomic<bool> Ended = false;
    std::thread Listener;
};

THttpsServer::THttpsServer(TSimulatedCloud& cloud, const TThrowAwayCertificates& certificates, int port)
    : Impl(std::make_unique<TImpl>(cloud, certificates, port)) {}

THttpsServer::~THttpsServer() = default;

int THttpsServer::Port() const {
    return Impl->Port();
}

} // namespace tidewell

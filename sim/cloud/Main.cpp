#include "core/DiskFiles.h"
#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/Numbers.h"
#include "sim/cloud/Certificates.h"
#include "sim/cloud/HttpsServer.h"
#include "sim/cloud/SimulatedCloud.h"

#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

namespace {

using namespace tidewell;

constexpr std::string_view Usage =
    "Usage: tidewell-cloud --config cloud.ini --ca-file PATH [--port 4161] [--ready-file PATH]\n"
    "  --config      users, devices and faults\n"
    "  --ca-file     where to write the certificate authority that clients have to trust\n"
    "  --port        port on 127.0.0.1; 0: any free one\n"
    "  --ready-file  gets the port as soon as the service can be reached\n"
    "  --help        prints this\n"
    "SIGHUP reads the configuration anew, SIGTERM and SIGINT end the service.\n";

struct TOptions {
    bool Help = false;
    std::filesystem::path Config;
    std::filesystem::path CaFile;
    std::filesystem::path ReadyFile;
    int Port = 4161;
};

int ParsePort(const std::string& text) {
    const auto port = TryToInteger(text);
    if (!port || *port < 0 || *port > 65535)
        throw TError("--port " + text + ": not a port from 0 to 65535");
    return *port;
}

TOptions ParseOptions(int count, char** arguments) {
    TOptions options;
    for (int index = 1; index < count; index += 2) {
        const std::string name = arguments[index];
        if (name == "--help") {
            options.Help = true;
            return options;
        }
        if (index + 1 >= count)
            throw TError(name + ": a value is missing");
        const std::string value = arguments[index + 1];
        if (name == "--config")
            options.Config = value;
        else if (name == "--ca-file")
            options.CaFile = value;
        else if (name == "--ready-file")
            options.ReadyFile = value;
        else if (name == "--port")
            options.Port = ParsePort(value);
        else
            throw TError(name + ": no such option");
    }
    if (options.Config.empty() || options.CaFile.empty())
        throw TError("--config and --ca-file are needed");
    return options;
}

TCloudConfig ReadConfig(const TDiskFiles& files, const std::filesystem::path& path) {
    if (!files.FileExists(path))
        throw TError(path.string() + ": no such file");
    return ReadCloudConfig(TIniFile(files, path));
}

void WriteFile(TDiskFiles& files, const std::filesystem::path& path, const std::string& text) {
    const auto writer = files.Replace(path);
    writer->Write(text);
    writer->Commit();
}

// To be called before any thread starts, so that all of them leave the signals to WaitForSignal.
sigset_t BlockSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void RunUntilEnded(const sigset_t& signals, TSimulatedCloud& cloud, const TDiskFiles& files,
                   const std::filesystem::path& config) {
    int signal = 0;
    while (sigwait(&signals, &signal) == 0 && signal == SIGHUP) {
        try {
            cloud.SetConfig(ReadConfig(files, config));
            std::cout << config.string() << " read anew" << std::endl;
        } catch (const std::exception& error) {
            std::cerr << "tidewell-cloud: " << error.what() << "; all stays as it was" << std::endl;
        }
    }
}

int Run(const TOptions& options) {
    const sigset_t signals = BlockSignals();
    TDiskFiles files;
    TSimulatedCloud cloud(ReadConfig(files, options.Config));
    const TThrowAwayCertificates certificates;
    // The server first: where another one runs, that one's authority must stay.
    const THttpsServer server(cloud, certificates, options.Port);
    WriteFile(files, options.CaFile, certificates.AuthorityPem());
    if (!options.ReadyFile.empty())
        WriteFile(files, options.ReadyFile, std::to_string(server.Port()) + "\n");
    std::cout << "https://localhost:" << server.Port() << "/api/v1.2" << std::endl;
    RunUntilEnded(signals, cloud, files, options.Config);
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    TOptions options;
    try {
        options = ParseOptions(count, arguments);
    } catch (const std::exception& error) {
        std::cerr << "tidewell-cloud: " << error.what() << "\n" << Usage;
        return 2;
    }
    if (options.Help) {
        std::cout << Usage;
        return EXIT_SUCCESS;
    }
    try {
        return Run(options);
    } catch (const std::exception& error) {
        std::cerr << "tidewell-cloud: " << error.what() << std::endl;
        return EXIT_FAILURE;
    }
}

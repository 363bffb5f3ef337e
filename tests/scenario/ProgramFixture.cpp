#include "scenario/ProgramFixture.h"

#include "core/DiskFiles.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tidewell::test {

namespace {

// Notes each request on its way to the stand-in.
class TNotedHttp : public IHttp {
  public:
    TNotedHttp(TCloudService& service, IWait& wait, const bool& online, std::vector<std::string>& requests)
        : Http(service, wait), Online(online), Requests(requests) {}
    THttpReply Exchange(const THttpRequest& request) override {
        const auto path = request.Url.find("/api/");
        Requests.push_back(request.Method + " " + request.Url.substr(path));
        Http.Connected = Online;
        return Http.Exchange(request);
    }

  private:
    TCloudServiceHttp Http;
    const bool& Online;
    std::vector<std::string>& Requests;
};

} // namespace

TProgramFixture::TProgramFixture() {
    Files.CurrentDirectory = "/t";
    const std::filesystem::path installation = std::filesystem::path(TIDEWELL_SOURCE_DIR) / "installation";
    const TDiskFiles disk;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(installation))
        if (entry.is_regular_file())
            Files.Put("/t" / entry.path().lexically_relative(installation), disk.Read(entry.path()));
    Cloud = std::make_unique<TCloudService>(
        ReadCloudConfig(TIniFile(disk, std::filesystem::path(TIDEWELL_SOURCE_DIR) / "sim/cloud/cloud.ini")),
        [this] { return Time.Now(); });
    Nabto.SimulationFile = Simulation;
    Nabto.OnReport = [](const std::string& line) {
        ADD_FAILURE() << line;
    };
    Time.OnException = [this](const std::exception& error) {
        Dialogs.ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    };
}

TProgram& TProgramFixture::Start() {
    Application.IsTerminated = false;
    const auto makeHttp = [this](const std::filesystem::path& caFile) {
        CaFile = caFile;
        return std::make_unique<TNotedHttp>(*Cloud, Time, Online, Requests);
    };
    Program =
        Build(TPorts{Dialogs, Time, Time, Time, Files, KHelper, Process, Application, Pictures, makeHttp},
              TStartOptions{"/t", "/t/tidewell", Arguments, TFileVersion{1, 0, 0, 1}});
    Program->Start();
    Time.Advance(200);
    return *Program;
}

void TProgramFixture::Close() {
    Program->FormMain.Close1Click();
    Program->Finish();
    Program.reset();
}

void TProgramFixture::Edit(const std::filesystem::path& path, const std::string& from,
                           const std::string& to) {
    std::string& text = Files.Content[path];
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
}

std::string TProgramFixture::Language(const std::string& section, const std::string& key) const {
    return TIniFile(Files, "/t/cfg/english.lng").ReadText(section, key);
}

void TProgramFixture::RunUntilRows(std::size_t rows) {
    ASSERT_TRUE(Time.AdvanceUntil([this, rows] { return Main().LogBuffers.DatalogCount >= rows; }, 3600000));
}

std::vector<std::string> TProgramFixture::FilesBelow(const std::filesystem::path& directory) const {
    std::vector<std::string> names;
    for (const auto& [path, bytes] : Files.Content)
        if (path.string().starts_with(directory.string() + "/"))
            names.push_back(path.string());
    return names;
}

std::ptrdiff_t TProgramFixture::QueryCount(const std::string& query) const {
    return std::ranges::count_if(Libraries.Calls, [&query](const std::string& call) {
        return call.find("/" + query) != std::string::npos;
    });
}

} // namespace tidewell::test

#include "scenario/ProgramFixture.h"

#include "core/DiskFiles.h"
#include "core/Guard.h"
#include "core/TextFile.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

namespace tidewell::test {

namespace {

// Tells of each exchange with the stand-in.
class TNotedHttp : public IHttp {
  public:
    using TNote = std::function<void(const THttpRequest&, const THttpReply&)>;
    TNotedHttp(TSimulatedCloud& service, IWait& wait, const bool& online, TNote note)
        : Http(service, wait), Online(online), Note(std::move(note)) {}
    THttpReply Exchange(const THttpRequest& request) override {
        Http.Connected = Online;
        THttpReply reply = Http.Exchange(request);
        Note(request, reply);
        return reply;
    }

  private:
    TInProcessCloud Http;
    const bool& Online;
    TNote Note;
};

constexpr std::string_view ApiPath = "/api/v1.2";

} // namespace

TProgramFixture::TProgramFixture() {
    Files.CurrentDirectory = "/t";
    const std::filesystem::path installation = std::filesystem::path(TIDEWELL_SOURCE_DIR) / "installation";
    const TDiskFiles disk;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(installation))
        if (entry.is_regular_file())
            Files.Put("/t" / entry.path().lexically_relative(installation), disk.Read(entry.path()));
    Edit(SystemFile, "[Extensions]", "[NoExtensions]");
    Cloud = std::make_unique<TSimulatedCloud>(
        ReadCloudConfig(TIniFile(disk, std::filesystem::path(TIDEWELL_SOURCE_DIR) / "sim/cloud/cloud.ini")),
        [this] { return Time.Now(); });
    Nabto.SimulationFile = Simulation;
    Nabto.OnCall = [this](const std::string& call) {
        Libraries.Calls.push_back(call);
        Log.push_back(ShortCall(call));
    };
    Dialogs.OnMessage = [this](const std::string& text) { Log.push_back("box " + text); };
    Nabto.OnReport = [](const std::string& line) { ADD_FAILURE() << line; };
    Time.OnException = [this](const std::exception& error) {
        Dialogs.ShowMessageBox(EMessageKind::Error, error.what(), EButtons::Ok);
    };
}

TProgram& TProgramFixture::Start() {
    Application.IsTerminated = false;
    Tokens.clear();
    const auto makeHttp = [this](const std::filesystem::path& caFile) {
        CaFile = caFile;
        return std::make_unique<TNotedHttp>(*Cloud, Time, Online,
                                            [this](const THttpRequest& request, const THttpReply& reply) {
                                                Log.push_back(RequestLine(request, reply));
                                            });
    };
    Program =
        Build(TPorts{Dialogs, Time, Time, Time, Files, KHelper, Process, Application, Pictures, makeHttp},
              TStartOptions{"/t", "/t/tidewell", Arguments, Tsysteminfo{1, 0, 0, 1}});
    Program->Start();
    Time.Advance(200);
    return *Program;
}

void TProgramFixture::Close() {
    Program->FormMain.Close();
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
    ASSERT_TRUE(
        Time.AdvanceUntil([this, rows] { return Program->LogBuffers.DatalogCount >= rows; }, 3600000));
}

std::vector<double> TProgramFixture::Samples(std::size_t rows) {
    std::vector<double> samples;
    const TSampleTable& table = Program->GraphPage.DataLogDataValues;
    for (std::size_t channel = 0; channel < table.Channels(); ++channel)
        for (std::size_t row = 0; row < rows; ++row)
            samples.push_back(table.At(channel, row));
    return samples;
}

std::vector<std::string> TProgramFixture::FilesBelow(const std::filesystem::path& directory) const {
    std::vector<std::string> names;
    for (const auto& [path, bytes] : Files.Content)
        if (path.string().starts_with(directory.string() + "/"))
            names.push_back(path.string());
    return names;
}

void TProgramFixture::ExpectGolden(const std::filesystem::path& name, const std::string& bytes) {
    const auto golden = std::filesystem::path(TIDEWELL_SOURCE_DIR) / "tests/scenario/golden" / name;
    TDiskFiles disk;
    if (std::getenv("TIDEWELL_UPDATE_GOLDEN") != nullptr) {
        disk.CreateDirectories(golden.parent_path());
        const auto file = disk.Replace(golden);
        file->Write(bytes);
        file->Commit();
    }
    ASSERT_TRUE(disk.FileExists(golden)) << golden;
    EXPECT_TRUE(bytes == disk.Read(golden)) << "differs from " << golden << ":\n" << bytes.substr(0, 4000);
}

std::ptrdiff_t TProgramFixture::QueryCount(const std::string& query) const {
    return std::ranges::count_if(Libraries.Calls, [&query](const std::string& call) {
        return call.find("/" + query) != std::string::npos;
    });
}

// The interface definition is long: its file's name stands for it.
std::string TProgramFixture::ShortCall(const std::string& call) const {
    const std::string function = "nabtoRpcSetDefaultInterface ";
    if (!call.starts_with(function))
        return call;
    for (const std::string name : {"standalone.xml", "gateway.xml"}) {
        std::string definition;
        for (const std::string& line : ReadLines(Files, "/t/nabto_config/" + name))
            definition += line;
        if (call == function + definition)
            return function + name;
    }
    return call;
}

std::string TProgramFixture::RequestLine(const THttpRequest& request, const THttpReply& reply) {
    std::string line = request.Method + " " + request.Url.substr(request.Url.find(ApiPath) + ApiPath.size());
    if (!request.Body.empty())
        line += " " + request.Body;
    for (const auto& [name, value] : request.Headers) {
        if (name != "Authorization")
            continue;
        const auto token = std::ranges::find(Tokens, value);
        line += token == Tokens.end() ? " [" + value + "]"
                                      : " [token" + std::to_string(token - Tokens.begin() + 1) + "]";
    }
    if (const std::string token = reply.Header("Authorization"); !token.empty())
        Tokens.push_back(token);
    return line + " -> " + std::to_string(reply.Code);
}

void TProgramFixture::Expect(const TSteps& steps) {
    for (const TStep& step : steps) {
        if (step.Line.starts_with("box "))
            Dialogs.ExpectMessage(step.Line.substr(4), step.Answer);
        else if (step.Action)
            Dialogs.ExpectForm(step.Line.substr(5), [this, step](TForm&) {
                Log.push_back(step.Line);
                RunGuarded(Dialogs, step.Action);
            });
        Expected.push_back(step.Line);
    }
}

void TProgramFixture::CheckLog() {
    const auto text = [](std::vector<std::string>& lines) {
        std::string joined;
        for (const std::string& line : std::exchange(lines, {}))
            joined += line + "\n";
        return joined;
    };
    EXPECT_EQ(text(Log), text(Expected));
    EXPECT_TRUE(Dialogs.AllAnswered());
}

TStep TProgramFixture::SetupDialog(const std::function<void(TSetupForm&)>& action) {
    return {"form SetupForm", [this, action] { action(Program->SetupForm); }};
}

TStep TProgramFixture::LogOn(const std::string& user, const std::string& password, bool offline) {
    return {"form NabtoLogOn", [this, user, password, offline] {
                TNabtoLogOn& form = Program->NabtoLogOn;
                EXPECT_EQ(form.EditUser.Text() + form.EditPW.Text(), "");
                EXPECT_TRUE(form.EditPW.Masked());
                form.EditUser.Enter(user);
                form.EditPW.Enter(password);
                form.offLineSessionCheckBox.SetChecked(offline);
                form.ButOk.Click();
            }};
}

TStep TProgramFixture::CancelLogOn() {
    return {"form NabtoLogOn", [this] { Program->NabtoLogOn.ButCancel.Click(); }};
}

TStep TProgramFixture::LoginRequest(const std::string& user, const std::string& password, int code) {
    return Request(R"(POST /login {  "Username": ")" + user + R"(", "Password": ")" + password +
                       R"(", "MajorVersion": "0", "MinorVersion": "0", "PatchVersion": "0", )" +
                       R"("RevisionNumber": "0"})",
                   code);
}

TSteps TProgramFixture::OpenedSession() {
    const std::string identity = "service@users.tidewell.example 7d0f3c52a91e";
    return {"nabtoStartup nabto_config", "nabtoOpenSession " + identity, "nabtoCreateProfile " + identity,
            "nabtoOpenSession " + identity, "nabtoRpcSetDefaultInterface standalone.xml"};
}

void TProgramFixture::ExpectPings(const std::string& id, int count) {
    for (int i = 0; i < count; ++i)
        Expect({"nabtoRpcInvoke nabto://" + id +
                    R"(.hv.example/ping.json?json={"request":{"ping":"1885957735"}})",
                "nabtoFree"});
}

void TProgramFixture::DropPollsFromLog() {
    std::vector<std::string> rest;
    for (std::size_t i = 0; i < Log.size(); ++i) {
        const bool poll = Log[i].find("ReadValue.json?") != std::string::npos;
        if (!poll)
            rest.push_back(Log[i]);
        else if (i + 1 < Log.size() && Log[i + 1] == "nabtoFree")
            ++i;
        else
            ADD_FAILURE() << "the answer is not freed: " << Log[i];
    }
    Log = std::move(rest);
}

} // namespace tidewell::test

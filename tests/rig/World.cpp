#include "rig/World.h"

#include "rig/Wire.h"

namespace tidewell::test {

namespace {

// The stand-in, with an ear at each exchange.
class TToldHttp : public IHttp {
  public:
    TToldHttp(TWorld& world, std::function<void(const THttpRequest&, const THttpReply&)> tell)
        : World(world), Http(*world.Cloud, world.Time), Tell(std::move(tell)) {}
    THttpReply Exchange(const THttpRequest& request) override {
        if (World.BeforeExchange)
            World.BeforeExchange();
        Http.Connected = World.Online;
        THttpReply reply = Http.Exchange(request);
        Tell(request, reply);
        return reply;
    }

  private:
    TWorld& World;
    TInProcessCloud Http;
    std::function<void(const THttpRequest&, const THttpReply&)> Tell;
};

} // namespace

const TMemoryFiles& Installation() {
    static const TMemoryFiles files = [] {
        TMemoryFiles read;
        const auto source = std::filesystem::path(TIDEWELL_SOURCE_DIR) / "installation";
        for (const auto& entry : std::filesystem::recursive_directory_iterator(source))
            if (entry.is_regular_file())
                read.Put("/t" / entry.path().lexically_relative(source), TDiskFiles().Read(entry.path()));
        return read;
    }();
    return files;
}

TWorld::TWorld() : Files(Installation()) {
    Files.CurrentDirectory = "/t";
    Edit(SystemFile, "[Extensions]", "[NoExtensions]");
    Cloud = std::make_unique<TSimulatedCloud>(
        ReadCloudConfig(
            TIniFile(TDiskFiles(), std::filesystem::path(TIDEWELL_SOURCE_DIR) / "sim/cloud/cloud.ini")),
        [this] { return Time.Now(); });
    Nabto.SimulationFile = Simulation;
    Nabto.OnCall = [this](const std::string& call) {
        if (BeforeExchange &&
            (call.starts_with("nabtoRpcInvoke") || call.starts_with("nabtoStreamReadIntoBuf")))
            BeforeExchange();
        if (const std::string text = Call(call); OnExchange && !text.empty())
            OnExchange(text);
    };
    Nabto.OnReport = [](const std::string& line) { ADD_FAILURE() << line; };
}

void TWorld::Start(IDialogs& dialogs, std::vector<std::string> arguments) {
    Application.IsTerminated = false;
    Tokens.clear();
    for (std::string& argument : arguments)
        if (argument == "[token1]") {
            Tokens = {Cloud
                          ->Handle({"POST", "/api/v1.2/login", "",
                                    R"({"Username": "service", "Password": "tidewell"})"})
                          .Authorization};
            argument = Tokens[0].substr(std::string_view("Bearer ").size());
        }
    const auto makeHttp = [this](const std::filesystem::path&) {
        return std::make_unique<TToldHttp>(
            *this, [this](const THttpRequest& request, const THttpReply& reply) {
                if (const std::string text = Request(request, reply); OnExchange)
                    OnExchange(text);
            });
    };
    Program =
        Build(TPorts{dialogs, Time, Time, Time, Files, KHelper, Process, Application, Pictures, makeHttp},
              TStartOptions{
                  "/t", "/t/tidewell", std::move(arguments), Tsysteminfo{1, 0, 0, 1}, {"/spare", "/tmp"}});
    if (OnBuilt)
        OnBuilt();
    Program->Start();
    Time.Advance(200);
}

void TWorld::Close() {
    Program->FormMain.Close();
    Program->Finish();
    End();
}

void TWorld::End() {
    if (Program && BeforeEnd)
        BeforeEnd();
    Program.reset();
}

bool TWorld::Edit(const std::filesystem::path& path, const std::string& from, const std::string& to) {
    std::string& text = Files.Content[path];
    const auto at = text.find(from);
    if (at != std::string::npos)
        text.replace(at, from.size(), to);
    return at != std::string::npos;
}

void TWorld::Simulate() {
    std::string text = Files.Content.at(Simulation);
    for (const auto& [section, rows] : Simulated)
        text += "\n[" + section + "]\n" + rows + "\n";
    Nabto.Configure(ParseSimulation(text, Simulation));
}

std::vector<TForm*> TWorld::Forms() const {
    return {&Program->FormMain,    &Program->NabtoDevice,   &Program->SetupForm,      &Program->NabtoLogOn,
            &Program->InputDialog, &Program->LoadSetpoints, &Program->languagedialog, &Program->Splashscreen};
}

std::string TWorld::Request(const THttpRequest& request, const THttpReply& reply) {
    static constexpr std::string_view apiPath = "/api/v1.2";
    std::string line = request.Method + " " + request.Url.substr(request.Url.find(apiPath) + apiPath.size());
    if (!request.Body.empty())
        line += " " + FieldOf(request.Body, "Username") + " " + FieldOf(request.Body, "Password");
    for (const auto& [name, value] : request.Headers) {
        if (name != "Authorization")
            continue;
        const auto token = std::ranges::find(Tokens, value);
        line += token == Tokens.end() ? " [" + value + "]"
                                      : " [token" + std::to_string(token - Tokens.begin() + 1) + "]";
    }
    if (const std::string token = reply.Header("Authorization"); !token.empty())
        Tokens.push_back(token);
    return line + " " + (reply.Code == -1 ? "no reply" : std::to_string(reply.Code));
}

// The interface definition is long: its file's name stands for it. A question of the poll cycle is one word.
std::string TWorld::Call(const std::string& call) const {
    if (call.starts_with("nabtoRpcSetDefaultInterface ")) {
        for (const std::string name : {"standalone.xml", "gateway.xml"}) {
            std::string definition;
            for (const std::string& line : ReadLines(Files, "/t/nabto_config/" + name))
                definition += line;
            if (call.ends_with(" " + definition))
                return "interface " + name;
        }
        return "interface ?";
    }
    if (Program)
        for (std::size_t i = 0; i < Program->NabtoDevice.Cycle.Questions.Count(); ++i)
            if (IsQuestion(call, Program->NabtoDevice.Cycle.Questions.ValueAt(i)))
                return "poll";
    return ShortCall(call);
}

} // namespace tidewell::test

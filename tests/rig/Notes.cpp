#include "rig/Notes.h"

#include "rig/Wire.h"
#include "rig/World.h"

namespace tidewell::test {

namespace {

std::string OneLine(const std::string& text) {
    std::string line;
    for (const char character : text)
        line += character == '\n' ? "\\n" : character == '\r' ? "\\r" : std::string(1, character);
    return line;
}

// Lines that only the second text has.
std::vector<std::string> NewLines(const std::string& before, const std::string& now) {
    EEncoding encoding{};
    std::vector<std::string> old = SplitLines(DecodeText(before, encoding));
    const std::string text = DecodeText(now, encoding);
    std::vector<std::string> lines;
    if (encoding == EEncoding::Utf16LittleEndian)
        lines.emplace_back("(UTF-16)");
    for (const std::string& line : SplitLines(text))
        if (const auto same = std::ranges::find(old, line); same != old.end())
            old.erase(same);
        else
            lines.push_back(line);
    return lines;
}

} // namespace

std::string Shown(const std::filesystem::path& path) {
    return path.string().starts_with("/t/") ? path.string().substr(3) : path.string();
}

TNotes::TNotes(TWorld& world) : World(world), Files(world.Files.Content) {
    World.OnExchange = [this](const std::string& call) { Calls.push_back(call); };
}

void TNotes::Tell(const std::string& line) {
    TellCalls();
    Lines.push_back(OneLine(line));
}

void TNotes::TellCalls() {
    if (!Calls.empty())
        Lines.push_back(JoinCalls(std::exchange(Calls, {})));
    std::string processes;
    for (; ProcessCalls < World.Process.Calls.size(); ++ProcessCalls)
        processes += (processes.empty() ? "program: " : "; ") + World.Process.Calls[ProcessCalls];
    if (!processes.empty())
        Lines.push_back(processes);
    for (; Errors < World.Application.Errors.size(); ++Errors)
        Lines.push_back("stderr: " + World.Application.Errors[Errors]);
}

void TNotes::TellFiles() {
    constexpr std::size_t most = 4;
    const auto& now = World.Files.Content;
    std::string all; // short texts share a line
    const auto tell = [this, &all](const std::string& text) {
        if (!all.empty() && all.size() + text.size() > 150)
            Lines.push_back(std::exchange(all, {}));
        all += (all.empty() ? "" : "; ") + text;
    };
    for (const auto& [path, bytes] : now) {
        const auto old = Files.find(path);
        if (old == Files.end()) {
            tell("wrote " + Shown(path) + ", " + std::to_string(SplitLines(bytes).size()) + " lines");
        } else if (old->second != bytes) {
            const auto lines = NewLines(old->second, bytes);
            std::string text = "changed " + Shown(path);
            for (std::size_t i = 0; i < lines.size() && i < most; ++i)
                text += (i == 0 ? ": " : " | ") + lines[i];
            tell(text + (lines.size() > most ? " | ... " + std::to_string(lines.size()) : ""));
        }
    }
    for (const auto& [path, bytes] : Files)
        if (!now.contains(path))
            tell("removed " + Shown(path));
    if (!all.empty())
        Lines.push_back(all);
    if (Files != now)
        Files = now;
}

void TNotes::TakeFiles() {
    Files = World.Files.Content;
}

std::vector<std::string> TNotes::TakeLines() {
    return std::exchange(Lines, {});
}

} // namespace tidewell::test

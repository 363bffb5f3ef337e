#include "rig/Weather.h"

#include "rig/JourneyText.h"
#include "rig/World.h"

namespace tidewell::test {

namespace {

// Rows of its file, or "offline".
void FaultOfCloud(TWorld& world, const std::string& rows) {
    world.Online = rows != "offline";
    std::string lines = "[User one]\nPassword=one\n[Faults]\n"; // there has to be one
    for (const std::string& row : Words(rows))
        lines += (row == "offline" ? std::string() : row) + "\n";
    TMemoryFiles files;
    files.Put("/cloud.ini", lines);
    world.Cloud->SetFaults(ReadCloudConfig(TIniFile(files, "/cloud.ini")).Faults);
}

// Bytes that are left, a path that cannot be written, or "locked PATH".
void FaultOfDisk(TWorld& world, const std::string& rows) {
    world.Files.Room = static_cast<std::size_t>(-1);
    world.Files.Unwritable.clear();
    world.Files.Locked.clear();
    if (rows.starts_with("locked "))
        world.Files.Locked.insert(Place(rows.substr(7)));
    else if (const auto room = ToIntegerOr(rows, -1); room >= 0)
        world.Files.Room = static_cast<std::size_t>(room);
    else if (!rows.empty())
        world.Files.Unwritable.insert(Place(rows));
}

} // namespace

void EditFile(TWorld& world, const std::string& rest) {
    const auto [file, change] = SplitFirst(rest);
    const auto path = Place(file);
    const std::string text = Unescaped(change.size() > 2 ? change.substr(2) : std::string());
    if (change == "-") {
        world.Files.Content.erase(path);
    } else if (change.starts_with("= ") || change == "=") {
        world.Files.Put(path, text);
    } else if (change.starts_with("+")) { // "+ LINE", or "+20 LINE" for as many
        const auto [times, line] = SplitFirst(Unescaped(change.substr(1)));
        for (int i = std::max(ToIntegerOr(times, 1), 1); i > 0; --i)
            world.Files.Put(path, world.Files.Content[path] + line + "\r\n");
    } else if (const auto arrow = change.find(" => "); arrow != std::string::npos) {
        if (!world.Edit(path, Unescaped(change.substr(0, arrow)), Unescaped(change.substr(arrow + 4))))
            throw TBadStep("the file does not hold that");
    } else if (change.starts_with("from ")) {
        world.Files.Put(path, world.Files.Read(Place(change.substr(5))));
    } else if (change == "UTF-16") {
        world.Files.Put(path, EncodeText(world.Files.Read(path), EEncoding::Utf16LittleEndian));
    } else {
        throw TBadStep("no such change");
    }
    if (path == TWorld::Simulation)
        world.Simulate();
}

void SetFault(TWorld& world, const std::string& rest) {
    auto [name, rows] = SplitFirst(rest);
    if (name == "cloud")
        return FaultOfCloud(world, rows);
    if (name == "disk")
        return FaultOfDisk(world, rows);
    if (name == "library") {
        world.Libraries.Present = rows != "absent";
        world.Libraries.Missing.clear();
        if (!rows.empty() && rows != "absent")
            world.Libraries.Missing.insert(rows);
    } else if (name == "KHelper") {
        world.KHelper.Present = rows != "absent";
        world.KHelper.HasFunction = rows != "empty";
    } else if (name == "tools") {
        world.Process.CanStart = rows != "absent";
        world.Process.Output =
            rows.empty() || rows == "absent" ? std::nullopt : std::optional(Unescaped(rows));
    } else {
        for (std::size_t at = 0; (at = rows.find(" && ")) != std::string::npos;)
            rows.replace(at, 4, "\n");
        world.Simulated[name == "Library" ? name : "Faults " + name] = rows;
        world.Simulate();
    }
}

} // namespace tidewell::test

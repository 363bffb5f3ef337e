#include "sim/nabto/SimulationFile.h"

#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/Numbers.h"
#include "sim/common/IniLines.h"
#include "sim/nabto/RowText.h"
#include "sim/nabto/SimulationRows.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

namespace tidewell {

namespace {

constexpr std::int32_t MostCopies = 1000;

// Appends the controller; throws TError with the reason alone when its id is taken.
void Append(std::vector<TControllerSetup>& controllers, TControllerSetup setup) {
    const bool taken = std::any_of(controllers.begin(), controllers.end(),
                                   [&](const TControllerSetup& other) { return other.Id == setup.Id; });
    if (taken)
        throw TError("another controller has the id " + setup.Id);
    controllers.push_back(std::move(setup));
}

// The id that many further on, of 12 digits again.
std::string IdBehind(const std::string& id, std::int32_t steps) {
    std::string next = id;
    for (std::int64_t rest = steps, place = static_cast<std::int64_t>(id.size()) - 1; rest > 0; --place) {
        if (place < 0)
            throw TError("there are no " + std::to_string(steps) + " ids behind " + id);
        char& digit = next[static_cast<std::size_t>(place)];
        rest += digit - '0';
        digit = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    return next;
}

std::string ParseId(const std::string& text) {
    if (text.size() != 12 || text.find_first_not_of("0123456789") != std::string::npos)
        throw TError("\"" + text + "\" is no id of 12 digits");
    return text;
}

class TReader {
  public:
    TReader(std::string_view bytes, const std::string& shownPath) : Ini(bytes), ShownPath(shownPath) {}

    TSimulation Read(std::string_view bytes);

  private:
    using TRow = TIniSection::TRow;

    // Runs the work for each row of the section; what goes wrong is told with path, section and key.
    void EachRow(const std::string& section, const std::function<void(const TRow&)>& work);
    [[noreturn]] void Fail(const std::string& section, const std::string& key, const std::string& why) const;

    void CheckSections() const;
    TControllerSetup ReadController(const std::string& name);
    static bool ReadIdentity(const TRow& row, TIdentity& identity);
    void ReadService(const std::string& name, TControllerSetup& setup);

    TIniFile Ini;
    const std::string& ShownPath;
    std::set<std::string> Known; // sections read, in lower case
};

void TReader::Fail(const std::string& section, const std::string& key, const std::string& why) const {
    throw TError(ShownPath + ": section \"" + section + "\", key \"" + key + "\": " + why);
}

void TReader::EachRow(const std::string& section, const std::function<void(const TRow&)>& work) {
    Known.insert(LowerCase(section));
    for (const TRow& row : Ini.ReadSection(section).Rows()) {
        try {
            work(row);
        } catch (const TError& error) {
            Fail(section, row.Name, error.what());
        }
    }
}

void TReader::CheckSections() const {
    for (const std::string& name : Ini.SectionNames())
        if (!Known.contains(LowerCase(name)))
            throw TError(ShownPath + ": section \"" + name + "\" belongs to nothing");
}

bool TReader::ReadIdentity(const TRow& row, TIdentity& identity) {
    for (const char* name : {"Model", "Devicenumber", "Version HP", "Version NP", "Version HBDE",
                             "SlaveModel", "SlaveDevicenumber", "Version"}) {
        if (SameText(row.Name, name)) {
            identity.emplace_back(name, ParseInteger(row.Value));
            return true;
        }
    }
    return false;
}

TControllerSetup TReader::ReadController(const std::string& name) {
    TControllerSetup setup;
    setup.Name = name;
    std::string values = name;
    std::string service = name;
    const std::string section = "Controller " + name;
    const auto copies = [](const std::string& text) { return ParseIntegerWithin(text, 0, MostCopies); };
    const auto piece = [](const std::string& text) {
        return static_cast<std::size_t>(ParseIntegerWithin(text, 1, 1 << 20));
    };
    EachRow(section, [&](const TRow& row) {
        const bool known = TakeKey(row.Name, row.Value,
                                   {{"Id", Into(setup.Id, ParseId)},
                                    {"Local", Into(setup.Local, ParseYesNo)},
                                    {"Remote", Into(setup.Remote, ParseYesNo)},
                                    {"Users", Into(setup.Users, SplitNames)},
                                    {"Values", Into(values, AsItIs)},
                                    {"Service", Into(service, AsItIs)},
                                    {"WriteStatus", Into(setup.WriteStatus, ParseInteger)},
                                    {"Copies", Into(setup.Copies, copies)},
                                    {"StreamPiece", Into(setup.StreamPiece, piece)}});
        if (!known && !ReadIdentity(row, setup.Identity))
            throw TError("unknown key");
    });
    if (setup.Id.empty())
        Fail(section, "Id", "it is missing");
    for (const char* needed : {"Model", "Devicenumber"}) {
        const bool present = std::any_of(setup.Identity.begin(), setup.Identity.end(),
                                         [&](const auto& member) { return member.first == needed; });
        if (!present)
            Fail(section, needed, "it is missing");
    }
    EachRow("Values " + values,
            [&](const TRow& row) { setup.Values.push_back(ParseValueRow(row.Name, row.Value)); });
    ReadService(service, setup);
    EachRow("Faults " + name, [&](const TRow& row) { ParseFaultRow(row.Name, row.Value, setup.Faults); });
    return setup;
}

void TReader::ReadService(const std::string& name, TControllerSetup& setup) {
    const std::string section = "Service " + name;
    if (!Ini.SectionExists(section))
        return;
    TServiceSetup& service = setup.Service.emplace();
    EachRow(section, [&](const TRow& row) { ParseServiceRow(row.Name, row.Value, service); });
    TRegisterBank bank;
    for (const TValueRun& run : setup.Values)
        bank.Add(run);
    for (const TServiceSetup::TLogValue& value : service.LogValues) {
        if (!bank.Motion(value.Table, value.At)) {
            Fail(section, "LogValues",
                 "the controller has no " +
                     std::string(value.Table == ETable::Setpoint ? "setpoint " : "datapoint ") +
                     std::to_string(value.At.Obj) + " " + std::to_string(value.At.Address));
        }
    }
}

TSimulation TReader::Read(std::string_view bytes) {
    CheckIniLines(bytes, ShownPath);
    TSimulation simulation;
    std::vector<std::string> names;
    EachRow("Simulation", [&](const TRow& row) {
        if (!TakeKey(row.Name, row.Value,
                     {{"Controllers", Into(names, SplitNames)},
                      {"Domain", Into(simulation.Domain, AsItIs)},
                      {"AnswerTimeout", Into(simulation.AnswerTimeoutMs, ParseTime)}}))
            throw TError("unknown key");
    });
    if (names.empty())
        Fail("Simulation", "Controllers", "it names no controller");
    simulation.AnyUser = !Ini.SectionExists("Users");
    EachRow(
        "Users", [&](const TRow& row) { simulation.Users[row.Name] = row.Value; });
    EachRow("Library", [&](const TRow& row) {
        simulation.LibraryFaults.push_back(ParseLibraryRow(row.Name, row.Value));
    });
    for (const std::string& name : names) {
        const TControllerSetup setup = ReadController(name);
        try {
            for (std::int32_t copy = 0; copy <= setup.Copies; ++copy) {
                TControllerSetup next = setup;
                next.Id = IdBehind(setup.Id, copy);
                Append(simulation.Controllers, std::move(next));
            }
        } catch (const TError& error) {
            Fail("Controller " + name, "Id", error.what());
        }
    }
    CheckSections();
    return simulation;
}

} // namespace

TSimulation ParseSimulation(std::string_view bytes, const std::string& shownPath) {
    return TReader(bytes, shownPath).Read(bytes);
}

} // namespace tidewell

#include "core/IniFile.h"
#include "core/Numbers.h"
#include "fuzz/Fuzz.h"

namespace tidewell::test {
namespace {

// Writes the value under the key. It and nothing else reads otherwise afterwards, in memory as in the file.
void Write(std::string_view bytes, const std::string& section, const std::string& key,
           const std::string& value) {
    const TIniFile before(bytes);
    TIniFile file(bytes);
    try {
        file.WriteText(section, key, value);
    } catch (const EConvertError&) { // told
        Require(file.Bytes() == bytes, "a refused value has changed the file");
        return;
    }
    Require(file.Find(section, key) == value, "another value in memory");
    const TIniFile again(file.Bytes());
    Require(again.Find(section, key) == value, "another value in the file");
    for (const std::string& name : before.SectionNames()) {
        const TIniSection old = before.ReadSection(name);
        const TIniSection now = again.ReadSection(name);
        Require(now.Count() >= old.Count(), "a row is missing");
        for (const auto& row : old.Rows())
            if (!SameText(name, section) || !SameText(row.Name, key))
                Require(now.Find(row.Name) == old.Find(row.Name), "another row has changed");
    }
}

} // namespace

void FeedIni(std::string_view rest) {
    const std::string_view bytes = TakeUpTo(rest, nextPart);
    const std::string value(rest);
    const TIniFile file(bytes);
    Require(file.Bytes() == bytes, "reading changes the file");
    Write(bytes, "New section", "Key", value);
    // One section and one row of the file are written to; which ones, the value tells.
    const std::vector<std::string> sections = file.SectionNames();
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const TIniSection rows = file.ReadSection(sections[i]);
        for (const auto& row : rows.Rows()) {
            Require(file.Find(sections[i], row.Name) == rows.Find(row.Name), "two first rows");
            file.ReadInteger(sections[i], row.Name, 0);
        }
        if (i != value.size() % sections.size())
            continue;
        if (!sections[i].empty())
            Write(bytes, sections[i], "Key of ours", value);
        if (!rows.Empty())
            Write(bytes, sections[i], rows.Rows()[value.size() % rows.Count()].Name, value);
    }
}

} // namespace tidewell::test

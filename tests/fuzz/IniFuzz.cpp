#include "core/Errors.h"
#include "core/IniFile.h"
#include "core/Numbers.h"
#include "fuzz/Fuzz.h"

#include <cstdint>

namespace tidewell::test {
namespace {

constexpr char valueFollows = '\x1C';

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
} // namespace tidewell::test

// A file, 0x1C and a value to write.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tidewell;
    using namespace tidewell::test;
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view bytes = TakeUpTo(rest, valueFollows);
    const std::string value(rest);
    const TIniFile file(bytes);
    Require(file.Bytes() == bytes, "reading changes the file");
    Write(bytes, "New section", "Key", value);
    std::size_t writes = 8;
    for (const std::string& section : file.SectionNames()) {
        const TIniSection rows = file.ReadSection(section);
        for (const auto& row : rows.Rows()) {
            Require(file.Find(section, row.Name) == rows.Find(row.Name), "two first rows");
            file.ReadInteger(section, row.Name, 0);
            if (writes > 0 && --writes > 0)
                Write(bytes, section, row.Name, value);
        }
        if (!section.empty())
            Write(bytes, section, "Key of ours", value);
    }
    return 0;
}

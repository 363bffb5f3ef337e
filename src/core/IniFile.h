#pragma once

#include "core/TextFile.h"
#include "core/ports/IFiles.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tidewell {

// The rows of one section in file order, duplicates too.
class TIniSection {
  public:
    struct TRow {
        std::string Name;
        std::string Value; // all behind the first "="
    };

    TIniSection() = default;
    explicit TIniSection(std::vector<TRow> rows) : Content(std::move(rows)) {}

    const std::vector<TRow>& Rows() const { return Content; }
    std::size_t Count() const { return Content.size(); }
    bool Empty() const { return Content.empty(); }
    // First row of that name, compared without case; nothing if there is none.
    std::optional<std::string> Find(std::string_view name) const;
    // The same; empty if there is none.
    std::string Value(std::string_view name) const;
    // Value at the position from 0; empty beyond the end.
    std::string ValueAt(std::size_t position) const;

  private:
    std::vector<TRow> Content;
};

// An INI file in memory. Section and key names compare without case; the first match counts. Blanks around
// names and values are dropped, and so is one pair of quotes around a value. A line that starts with ";" is a
// comment. Writing changes only the lines of the keys written: order, comments, blank lines, unknown keys,
// duplicates, encoding and line ends stay as they were.
class TIniFile {
  public:
    // A file that is missing or unreadable reads as empty.
    TIniFile(const IFiles& files, std::filesystem::path path);
    // From text instead of a file.
    explicit TIniFile(std::string_view bytes);

    const std::filesystem::path& Path() const { return FilePath; }
    std::vector<std::string> SectionNames() const; // in file order; a repeated one once
    bool SectionExists(std::string_view section) const;
    // All rows of all sections of that name.
    TIniSection ReadSection(std::string_view section) const;
    std::optional<std::string> Find(std::string_view section, std::string_view key) const;
    std::string ReadText(std::string_view section, std::string_view key,
                         std::string_view otherwise = {}) const;
    // The default on a missing or bad value.
    std::int32_t ReadInteger(std::string_view section, std::string_view key, std::int32_t otherwise) const;
    // Lower-cased value equals "true".
    bool ReadTrue(std::string_view section, std::string_view key) const;
    // Lower-cased value does not equal "false".
    bool ReadNotFalse(std::string_view section, std::string_view key) const;
    // "true", "false" or a number. Throws EConvertError that names file, section, key and value.
    bool ReadStrict(std::string_view section, std::string_view key, std::string_view otherwise = {}) const;

    // Replaces the value of the first such key, or adds the key at the end of the section, or the section at
    // the end of the file.
    void WriteText(std::string_view section, std::string_view key, std::string_view value);
    // Only if something was written that differs. Throws EInOutError; the file is then as it was.
    void Save(IFiles& files);
    std::string Bytes() const; // as Save would write them

  private:
    // Left to the implementation; helpers may reshape the private part.
    std::filesystem::path FilePath;
};

} // namespace tidewell

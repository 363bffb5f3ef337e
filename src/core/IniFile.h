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
    explicit TIniSection(std::vector<TRow> rows);

    const std::vector<TRow>& Rows() const& { return Content; }
    std::vector<TRow> Rows() && { return std::move(Content); } // so that a loop over a temporary is safe
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
    std::vector<std::size_t> ByName; // positions in order of name, then position
};

// An INI file in memory. Section and key names compare without case; the first match counts. Blanks around
// names and values are dropped, and so is one pair of quotes around a value. A line that starts with ";" is a
// comment, and a line without "=" is no row. Writing changes only the lines of the keys written: order,
// comments, blank lines, unknown keys, duplicates, encoding and line ends stay as they were. Only a
// Windows-1252 file that is to hold a character which that encoding lacks turns into UTF-8 as a whole.
class TIniFile {
  public:
    // A file that is missing or unreadable reads as empty.
    TIniFile(const IFiles& files, std::filesystem::path path);
    // From text instead of a file.
    explicit TIniFile(std::string_view bytes);

    const std::filesystem::path& Path() const { return FilePath; }
    // Why the file could not be read, a missing one too; empty if it was.
    const std::string& ReadFailure() const { return Failure; }
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

    // "file: [section] key: ", the start of a message about the key.
    std::string Where(std::string_view section, std::string_view key) const;

    // Replaces the value of the first such key, or adds the key behind the last row of the section, or the
    // section at the end of the file. Throws EConvertError for a value of more than one line or one that is
    // no UTF-8.
    void WriteText(std::string_view section, std::string_view key, std::string_view value);
    // Only if something was written that differs. Throws EInOutError, also when the file is there but could
    // not be read; it is then as it was.
    void Save(IFiles& files);
    std::string Bytes() const; // as Save would write them

  private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    // Lines are linked, so that one can be added in the middle and all others keep their position.
    struct TLine {
        std::string Text;
        std::string End; // empty for a last line without one
        std::size_t Next = None;
    };
    struct TKeyRow {
        std::string Name;
        std::string Value;
        std::size_t Line = None;
    };
    struct THash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const;
    };
    struct TSame {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const;
    };
    using TIndex = std::unordered_map<std::string, std::size_t, THash, TSame>;
    struct TSectionRows {
        std::string Name;
        std::vector<TKeyRow> Rows;
        TIndex ByName;               // first row of each name
        std::size_t LastLine = None; // of the first section of the name: its last row or its heading
        std::size_t Repeated = 0;    // headings of that name
    };

    void Parse(std::string_view bytes);
    void ParseLine(std::size_t line, std::size_t& section);
    std::size_t OpenSection(std::string_view name, std::size_t line);
    const TKeyRow* FindRow(std::string_view section, std::string_view key) const;
    void AddKey(std::string_view section, std::string_view key, std::string_view value);
    // Adds the line behind another, at the end of the file for None; gives its position.
    std::size_t InsertLine(std::size_t behind, std::string text);

    std::filesystem::path FilePath;
    std::string Failure;
    bool Unread = false; // it is there, but could not be read
    EEncoding Encoding = EEncoding::Utf8;
    std::string LineEnd = "\r\n"; // of the first line that has one
    std::vector<TLine> Lines;
    std::size_t FirstLine = None;
    std::size_t LastLine = None;
    std::vector<TSectionRows> Sections;
    TIndex SectionByName;
    bool Modified = false;
};

} // namespace tidewell

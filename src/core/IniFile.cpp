#include "core/IniFile.h"

#include "core/Errors.h"
#include "core/Numbers.h"

#include <algorithm>
#include <numeric>

namespace tidewell {

namespace {

bool Before(std::string_view a, std::string_view b) {
    return std::lexicographical_compare(
        a.begin(), a.end(), b.begin(), b.end(),
        [](char x, char y) {
            return static_cast<unsigned char>(LowerCase(x)) < static_cast<unsigned char>(LowerCase(y));
        });
}

bool IsQuoted(std::string_view value) {
    return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
           value.front() == value.back();
}

std::string_view Unquoted(std::string_view value) {
    return IsQuoted(value) ? value.substr(1, value.size() - 2) : value;
}

// The text that reads back as the value: in quotes where reading would take something off it, or where the
// old one stood in quotes.
std::string WrittenValue(std::string_view value, bool quote) {
    if (!quote && !IsQuoted(value) && Trim(value).size() == value.size())
        return std::string(value);
    return '"' + std::string(value) + '"';
}

// Length of the line end at the front of the text.
std::size_t EndLength(std::string_view text) {
    if (text.starts_with("\r\n"))
        return 2;
    return text.empty() ? 0 : 1;
}

} // namespace

TIniSection::TIniSection(std::vector<TRow> rows) : Content(std::move(rows)), ByName(Content.size()) {
    std::iota(ByName.begin(), ByName.end(), std::size_t{0});
    std::stable_sort(ByName.begin(), ByName.end(), [this](std::size_t a, std::size_t b) {
        return Before(Content[a].Name, Content[b].Name);
    });
}

std::optional<std::string> TIniSection::Find(std::string_view name) const {
    const auto found = std::lower_bound(
        ByName.begin(), ByName.end(), name,
        [this](std::size_t row, std::string_view wanted) { return Before(Content[row].Name, wanted); });
    if (found == ByName.end() || !SameText(Content[*found].Name, name))
        return std::nullopt;
    return Content[*found].Value;
}

std::string TIniSection::Value(std::string_view name) const {
    return Find(name).value_or(std::string());
}

std::string TIniSection::ValueAt(std::size_t position) const {
    return position < Content.size() ? Content[position].Value : std::string();
}

std::size_t TIniFile::THash::operator()(std::string_view name) const {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(LowerCase(c))) * 0x100000001B3U;
    return static_cast<std::size_t>(hash);
}

bool TIniFile::TSame::operator()(std::string_view a, std::string_view b) const {
    return SameText(a, b);
}

TIniFile::TIniFile(const IFiles& files, std::filesystem::path path) : FilePath(std::move(path)) {
    std::string bytes;
    try {
        bytes = files.Read(FilePath);
    } catch (const EInOutError& error) {
        Failure = error.what();
        Unread = files.FileExists(FilePath);
    }
    Parse(bytes);
}

TIniFile::TIniFile(std::string_view bytes) {
    Parse(bytes);
}

void TIniFile::Parse(std::string_view bytes) {
    const std::string decoded = DecodeText(bytes, Encoding);
    std::string_view text = decoded;
    std::size_t section = None;
    bool endKnown = false;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
        const std::size_t end = EndLength(text.substr(length));
        Lines.push_back({std::string(text.substr(0, length)), std::string(text.substr(length, end)), None});
        if (LastLine != None)
            Lines[LastLine].Next = Lines.size() - 1;
        LastLine = Lines.size() - 1;
        if (!endKnown && end != 0) {
            LineEnd = Lines.back().End;
            endKnown = true;
        }
        ParseLine(LastLine, section);
        text.remove_prefix(length + end);
    }
    if (!Lines.empty())
        FirstLine = 0;
}

void TIniFile::ParseLine(std::size_t line, std::size_t& section) {
    const std::string_view text = Trim(Lines[line].Text);
    if (text.empty() || text.front() == ';')
        return;
    if (text.front() == '[') {
        section = OpenSection(Trim(text.substr(1, text.find(']') - 1)), line);
        return;
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos)
        return;
    if (section == None)
        section = OpenSection({}, line);
    auto& rows = Sections[section];
    rows.ByName.try_emplace(std::string(Trim(text.substr(0, equals))), rows.Rows.size());
    rows.Rows.push_back({std::string(Trim(text.substr(0, equals))),
                         std::string(Unquoted(Trim(text.substr(equals + 1)))), line});
    if (rows.Repeated == 1)
        rows.LastLine = line;
}

std::size_t TIniFile::OpenSection(std::string_view name, std::size_t line) {
    const auto [entry, isNew] = SectionByName.try_emplace(std::string(name), Sections.size());
    if (isNew) {
        Sections.emplace_back();
        Sections.back().Name = name;
        Sections.back().LastLine = line;
    }
    ++Sections[entry->second].Repeated;
    return entry->second;
}

std::vector<std::string> TIniFile::SectionNames() const {
    std::vector<std::string> names;
    names.reserve(Sections.size());
    for (const auto& section : Sections)
        names.push_back(section.Name);
    return names;
}

bool TIniFile::SectionExists(std::string_view section) const {
    return SectionByName.contains(section);
}

TIniSection TIniFile::ReadSection(std::string_view section) const {
    const auto found = SectionByName.find(section);
    if (found == SectionByName.end())
        return {};
    std::vector<TIniSection::TRow> rows;
    rows.reserve(Sections[found->second].Rows.size());
    for (const auto& row : Sections[found->second].Rows)
        rows.push_back({row.Name, row.Value});
    return TIniSection(std::move(rows));
}

const TIniFile::TKeyRow* TIniFile::FindRow(std::string_view section, std::string_view key) const {
    const auto found = SectionByName.find(section);
    if (found == SectionByName.end())
        return nullptr;
    const auto& rows = Sections[found->second];
    const auto row = rows.ByName.find(key);
    return row == rows.ByName.end() ? nullptr : &rows.Rows[row->second];
}

std::optional<std::string> TIniFile::Find(std::string_view section, std::string_view key) const {
    const auto* const row = FindRow(section, key);
    return row == nullptr ? std::nullopt : std::optional(row->Value);
}

std::string TIniFile::ReadText(std::string_view section, std::string_view key,
                               std::string_view otherwise) const {
    const auto* const row = FindRow(section, key);
    return row == nullptr ? std::string(otherwise) : row->Value;
}

std::int32_t TIniFile::ReadInteger(std::string_view section, std::string_view key,
                                   std::int32_t otherwise) const {
    const auto* const row = FindRow(section, key);
    return row == nullptr ? otherwise : ToIntegerOr(row->Value, otherwise);
}

bool TIniFile::ReadTrue(std::string_view section, std::string_view key) const {
    const auto* const row = FindRow(section, key);
    return row != nullptr && SameText(row->Value, "true");
}

bool TIniFile::ReadNotFalse(std::string_view section, std::string_view key) const {
    const auto* const row = FindRow(section, key);
    return row == nullptr || !SameText(row->Value, "false");
}

bool TIniFile::ReadStrict(std::string_view section, std::string_view key, std::string_view otherwise) const {
    try {
        return ToBoolean(ReadText(section, key, otherwise));
    } catch (const EConvertError& error) {
        throw EConvertError(Where(section, key) + error.what());
    }
}

std::string TIniFile::Where(std::string_view section, std::string_view key) const {
    std::string text = FilePath.string();
    if (!text.empty())
        text += ": ";
    return text.append("[").append(section).append("] ").append(key).append(": ");
}

void TIniFile::WriteText(std::string_view section, std::string_view key, std::string_view value) {
    if (value.find_first_of("\r\n") != std::string_view::npos)
        throw EConvertError(Where(section, key) + "'" + std::string(value) + "' holds a line break");
    if (!IsValidUtf8(value))
        throw EConvertError(Where(section, key) + "'" + std::string(value) + "' is no UTF-8 text");
    const auto found = SectionByName.find(section);
    const auto row =
        found == SectionByName.end() ? TIndex::iterator() : Sections[found->second].ByName.find(key);
    if (found == SectionByName.end() || row == Sections[found->second].ByName.end()) {
        AddKey(section, key, value);
        return;
    }
    TKeyRow& old = Sections[found->second].Rows[row->second];
    if (old.Value == value)
        return;
    std::string& text = Lines[old.Line].Text;
    const std::size_t begin = std::min(text.find_first_not_of(" \t", text.find('=') + 1), text.size());
    text.replace(begin, std::string::npos, WrittenValue(value, IsQuoted(Trim(text.substr(begin)))));
    old.Value = value;
    Modified = true;
}

void TIniFile::AddKey(std::string_view section, std::string_view key, std::string_view value) {
    const auto found = SectionByName.find(section);
    const std::size_t position =
        found != SectionByName.end()
            ? found->second
            : OpenSection(section, InsertLine(LastLine, "[" + std::string(section) + "]"));
    TSectionRows& rows = Sections[position];
    rows.LastLine = InsertLine(rows.LastLine, std::string(key) + "=" + WrittenValue(value, false));
    rows.ByName.emplace(key, rows.Rows.size());
    rows.Rows.push_back({std::string(key), std::string(value), rows.LastLine});
    Modified = true;
}

std::size_t TIniFile::InsertLine(std::size_t behind, std::string text) {
    const std::size_t added = Lines.size();
    Lines.push_back({std::move(text), LineEnd, None});
    if (behind == None) {
        FirstLine = added;
    } else {
        // A last line without an end hands that trait on.
        if (Lines[behind].End.empty())
            std::swap(Lines[behind].End, Lines[added].End);
        Lines[added].Next = std::exchange(Lines[behind].Next, added);
    }
    if (Lines[added].Next == None)
        LastLine = added;
    return added;
}

std::string TIniFile::Bytes() const {
    std::string text;
    for (std::size_t line = FirstLine; line != None; line = Lines[line].Next)
        text.append(Lines[line].Text).append(Lines[line].End);
    return EncodeText(text, Encoding);
}

void TIniFile::Save(IFiles& files) {
    if (!Modified)
        return;
    if (Unread)
        throw EInOutError("Cannot write " + FilePath.string() + ", which could not be read: " + Failure);
    const auto writer = files.Replace(FilePath);
    const std::string bytes = Bytes();
    writer->Write(bytes);
    writer->Commit();
    if (Encoding == EEncoding::Windows1252 && IsValidUtf8(bytes))
        Encoding = EEncoding::Utf8;
    Modified = false;
}

} // namespace tidewell

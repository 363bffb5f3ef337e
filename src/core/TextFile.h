#pragma once

#include "core/ports/IFiles.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

enum class EEncoding { Utf8, Windows1252 };

// UTF-8 if the bytes are valid UTF-8 (a byte-order mark is dropped), else Windows-1252. The text is UTF-8.
std::string DecodeText(std::string_view bytes, EEncoding& encoding);
// The text in that encoding; a character that Windows-1252 lacks becomes "?".
std::string EncodeText(std::string_view utf8, EEncoding encoding);
bool IsValidUtf8(std::string_view bytes);

// The lines of a text; CR LF, LF and CR all end a line, and a last line needs no end.
std::vector<std::string> SplitLines(std::string_view text);

std::vector<std::string> ReadLines(const IFiles& files, const std::filesystem::path& path);
// UTF-8, each line ended by CR LF, replaced in one step. Throws EInOutError.
void WriteLines(IFiles& files, const std::filesystem::path& path, const std::vector<std::string>& lines);

} // namespace tidewell

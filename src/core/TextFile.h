#pragma once

#include "core/ports/IFiles.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// The mark is the byte-order mark; UTF-16 always has one.
enum class EEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian, Windows1252 };

// The text as UTF-8, without a byte-order mark. Bytes that are neither valid UTF-8 nor valid UTF-16 behind
// its mark are Windows-1252.
std::string DecodeText(std::string_view bytes, EEncoding& encoding);
// What DecodeText reads back as the text: in that encoding, but a text that Windows-1252 cannot keep comes
// out as UTF-8. Text that is no valid UTF-8 stays as it is.
std::string EncodeText(std::string_view utf8, EEncoding encoding);
bool IsValidUtf8(std::string_view bytes);

// The lines of a text; CR LF, LF and CR all end a line, and a last line needs no end.
std::vector<std::string> SplitLines(std::string_view text);

std::vector<std::string> ReadLines(const IFiles& files, const std::filesystem::path& path);
// The whole file: UTF-8, each line ended by CR LF. Gives its place. Throws EInOutError.
std::filesystem::path WriteLines(IFileWriter& file, const std::vector<std::string>& lines);

} // namespace tidewell

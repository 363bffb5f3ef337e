#pragma once

namespace tidewell {

class TProgram;
class TIniFile;

// Gives the main form and each of its rooms their texts, from the language file.
void ReadTexts(const TIniFile& language, TProgram& program);

} // namespace tidewell

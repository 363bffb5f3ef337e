#pragma once

namespace tidewell {

class TFormMain;
class TIniFile;

// Gives the main form and each of its rooms their texts, from the language file.
void ReadTexts(const TIniFile& language, TFormMain& main);

} // namespace tidewell

#pragma once

#include "core/IniFile.h"

#include <span>
#include <string_view>

// Improvements that change a customary step, text or file. Each is off unless its key in the system file, or
// `All` of the section `Extensions` for those that are not named, is "true" in any case.
namespace tidewell {

struct TExtensions {
    bool SetpointPageForgetRows = false;
    bool LogAutoStartSpareOpenFile = false;
    bool SessionReopen = false;
    bool InputDialogStrict = false;
    bool ServiceStrict = false;
    bool LogonPrivatePassword = false;
    bool CloseAsk = false;
    bool JournalEnabled = false;
    bool LanguageKeepArguments = false;
    bool ProfileKeepEdits = false;
};

struct TExtensionKey {
    std::string_view Section;
    std::string_view Key;
    bool TExtensions::*Flag;
    std::string_view What; // as the user's guide tells it
};

std::span<const TExtensionKey> ExtensionKeys();

TExtensions ReadExtensions(const TIniFile& systemFile);

} // namespace tidewell

#include "core/Extensions.h"

#include <array>

namespace tidewell {

namespace {

constexpr std::array keys{
    TExtensionKey{"SetpointPage", "ForgetRows", &TExtensions::SetpointPageForgetRows,
                  "a change of profile empties the grid until a group is chosen"},
    TExtensionKey{"LogAutoStart", "SpareOpenFile", &TExtensions::LogAutoStartSpareOpenFile,
                  "the automatic start of the log does not come once a file is open"},
    TExtensionKey{"Session", "Reopen", &TExtensions::SessionReopen,
                  "a session that the library has ended is closed, opened and pinged once more"},
    TExtensionKey{"InputDialog", "Strict", &TExtensions::InputDialogStrict,
                  "a value that was not touched is sent as the device holds it; before the first cycle the "
                  "dialog opens empty"},
    TExtensionKey{
        "Service", "Strict", &TExtensions::ServiceStrict,
        "updates, downloads and dumps claim only what the device said, and a bad package is refused "
        "before anything is sent"},
    TExtensionKey{"Logon", "PrivatePassword", &TExtensions::LogonPrivatePassword,
                  "the password is not handed to the helper tools, so it stands on no command line"},
    TExtensionKey{"Close", "Ask", &TExtensions::CloseAsk,
                  "the close asks where rows go that it cannot save, and asks again before it ends without "
                  "them"},
    TExtensionKey{
        "Journal", "Enabled", &TExtensions::JournalEnabled,
        "each row of a running log is written to a journal at once, from which the next start recovers a "
        "log that was cut off"},
    TExtensionKey{
        "Language", "KeepArguments", &TExtensions::LanguageKeepArguments,
        "the start anew after a change of language has the arguments of the first one, but for the logon"},
    TExtensionKey{"Profile", "KeepEdits", &TExtensions::ProfileKeepEdits,
                  "what was edited in the profile while it was open stays as it is at the close"},
};

} // namespace

std::span<const TExtensionKey> ExtensionKeys() {
    return keys;
}

TExtensions ReadExtensions(const TIniFile& systemFile) {
    TExtensions result;
    const bool all = systemFile.ReadTrue("Extensions", "All");
    for (const TExtensionKey& key : keys) {
        const bool named = systemFile.Find(key.Section, key.Key).has_value();
        result.*key.Flag = named ? systemFile.ReadTrue(key.Section, key.Key) : all;
    }
    return result;
}

} // namespace tidewell

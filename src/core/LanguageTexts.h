#pragma once

#include "core/IniFile.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// Captions and messages of the language file. The file is read once, at start-up, and handed to all that show
// its texts.
namespace tidewell {

class TCaptionControl;

// A row of a table of texts: a caption or a message, and its key.
struct TTextRow {
    TTextRow(std::string& message, std::string_view key) : Place(&message), Key(key) {}
    TTextRow(TCaptionControl& caption, std::string_view key) : Place(&caption), Key(key) {}

    std::variant<std::string*, TCaptionControl*> Place;
    std::string_view Key;
};

// Puts the texts of a section in their places. A missing text is empty.
void ReadTexts(const TIniFile& language, std::string_view section, std::initializer_list<TTextRow> rows);
// Words of our own: a key that is missing or empty leaves the English text that stands in the place.
void ReadOwnTexts(const TIniFile& language, std::string_view section, std::initializer_list<TTextRow> rows);

class TOwnText;

// A section of our own; its texts are members that name key and English text, which they keep if the key is
// missing or empty.
class TOwnTexts {
  public:
    explicit TOwnTexts(std::string_view section) : Section(section) {}
    TOwnTexts(const TOwnTexts&) = delete;
    TOwnTexts& operator=(const TOwnTexts&) = delete;

    void Read(const TIniFile& language);

  private:
    friend class TOwnText;
    std::string_view Section;
    std::vector<TOwnText*> Texts;
};

class TOwnText : public std::string {
  public:
    TOwnText(TOwnTexts& texts, std::string_view key, std::string_view english)
        : std::string(english), Key(key) {
        texts.Texts.push_back(this);
    }

  private:
    friend class TOwnTexts;
    std::string_view Key;
};

// The text with the first value in place of "%1", and so on.
std::string FillText(std::string_view text, std::initializer_list<std::string_view> values);

// What the event log tells of libraries, files and the service.
struct TEventLogTexts : TOwnTexts {
    TEventLogTexts() : TOwnTexts("EventLog") {}
    TOwnText LibraryNotLoaded{*this, "LibraryNotLoaded", "Library %1 not loaded: %2"};  // file, reason
    TOwnText InterfaceMissing{*this, "InterfaceMissing", "Interface file missing: %1"}; // path
    // Why there is no session.
    TOwnText NoLibrary{*this, "NoLibrary", "the library or one of its functions is missing"};
    // Place, text, number.
    TOwnText NumberReplaced{*this, "NumberReplaced", "%1'%2' is not possible, %3 is used"};
    TOwnText NoToken{*this, "NoToken", "Signed in, but the service gave no token"};
    TOwnText NoConnection{*this, "NoConnection", "No connection: %1"}; // reason
    TOwnText ProfileEdited{*this, "ProfileEdited",
                           "Edited meanwhile, and left as it stands in %1: %2"}; // path, keys
    TOwnText DeviceNotSaved{*this, "DeviceNotSaved", "Device %1 not saved: %2"}; // id, reason
};

} // namespace tidewell

#include "core/LanguageTexts.h"

#include "core/controls/Control.h"

#include <cstddef>

namespace tidewell {

namespace {

void Put(const TTextRow& row, const std::string& text) {
    if (const auto* caption = std::get_if<TCaptionControl*>(&row.Place))
        (*caption)->SetCaption(text);
    else
        *std::get<std::string*>(row.Place) = text;
}

} // namespace

void ReadTexts(const TIniFile& language, std::string_view section, std::initializer_list<TTextRow> rows) {
    for (const TTextRow& row : rows)
        Put(row, language.ReadText(section, row.Key));
}

void ReadOwnTexts(const TIniFile& language, std::string_view section, std::initializer_list<TTextRow> rows) {
    for (const TTextRow& row : rows)
        if (const std::string text = language.ReadText(section, row.Key); !text.empty())
            Put(row, text);
}

void TOwnTexts::Read(const TIniFile& language) {
    for (TOwnText* text : Texts)
        ReadOwnTexts(language, Section, {{*text, text->Key}});
}

std::string FillText(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto number = text[i] == '%' && i + 1 < text.size() ? text[i + 1] - '1' : -1;
        if (number < 0 || static_cast<std::size_t>(number) >= values.size()) {
            filled += text[i];
        } else {
            filled += values.begin()[number];
            ++i;
        }
    }
    return filled;
}

} // namespace tidewell

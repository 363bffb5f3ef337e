#include "core/controls/MaskEdit.h"

namespace tidewell {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

TMaskEdit::TMaskEdit(TControls& form, std::string name, std::string_view mask)
    : TControl(form, std::move(name)) {
    if (mask.starts_with('!'))
        mask.remove_prefix(1);
    for (std::size_t i = 0; i < mask.size() && mask[i] != ';'; ++i)
        if (mask[i] == '\\' && i + 1 < mask.size())
            Shape.push_back(mask[++i]);
        else
            Shape.push_back(mask[i] == '9' ? '\0' : mask[i]);
    SetText({});
}

void TMaskEdit::SetText(std::string_view text) {
    std::string laid;
    for (const char literal : Shape) {
        char place = literal != '\0' ? literal : ' ';
        if (literal != '\0') {
            if (const auto at = text.find(literal); at != std::string_view::npos)
                text.remove_prefix(at + 1);
        } else if (!text.empty() && (IsDigit(text.front()) || text.front() == ' ' || text.front() == '_')) {
            place = IsDigit(text.front()) ? text.front() : ' ';
            text.remove_prefix(1);
        }
        laid += place;
    }
    Assign(Content, laid);
}

} // namespace tidewell

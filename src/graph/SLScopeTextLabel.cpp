#include "graph/SLScopeTextLabel.h"

#include "core/Errors.h"

namespace tidewell {

TSLScopeTextLabel& TSLScopeLabels::Add() {
    Redraw.Touch();
    return Content.emplace_back(Redraw);
}

void TSLScopeLabels::Clear() {
    Content.clear();
    Redraw.Touch();
}

TSLScopeTextLabel& TSLScopeLabels::operator[](std::size_t index) {
    if (index >= Content.size())
        throw EListError("List index out of bounds (" + std::to_string(index) + ")");
    return Content[index];
}

} // namespace tidewell

#pragma once

#include "desktop/binders/FormBinder.h"

#include <functional>

namespace tidewell {

// Runs the handler, guarded, when the widget comes up and at each new size of it. What falls into a hold of
// deliveries is told after it.
void OnNewSize(QWidget& widget, const TViewContext& context, std::function<void()> handler);

} // namespace tidewell

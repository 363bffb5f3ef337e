#pragma once

#include <memory>
#include <utility>

namespace tidewell {

// Makes a Qt object that its parent owns and destroys.
template <class T, class TParent, class... TArgs>
T& NewChild(TParent& parent, TArgs&&... args) {
    auto child = std::make_unique<T>(std::forward<TArgs>(args)..., &parent);
    return *child.release();
}

// Adds a layout to a box layout, which owns it.
template <class T, class TBoxLayout>
T& NewLayout(TBoxLayout& outer, int stretch = 0) {
    auto inner = std::make_unique<T>();
    T& layout = *inner;
    outer.addLayout(inner.release(), stretch);
    return layout;
}

} // namespace tidewell

#pragma once

#include <QEvent>
#include <QObject>

#include <memory>
#include <utility>

namespace tidewell {

// Makes a Qt object that its parent owns and destroys.
template <class T, class TParent, class... TArgs>
T& NewChild(TParent& parent, TArgs&&... args) {
    auto child = std::make_unique<T>(std::forward<TArgs>(args)..., &parent);
    return *child.release();
}

template <class TFilter>
class TEventFilter : public QObject {
  public:
    TEventFilter(TFilter filter, QObject* parent) : QObject(parent), Filter(std::move(filter)) {}

  protected:
    bool eventFilter(QObject*, QEvent* event) override { return Filter(*event); }

  private:
    TFilter Filter;
};

// The filter sees each event of the watched object first, for as long as the owner lives; true keeps it from
// the object.
template <class TFilter>
void FilterEvents(QObject& watched, QObject& owner, TFilter filter) {
    watched.installEventFilter(&NewChild<TEventFilter<TFilter>>(owner, std::move(filter)));
}
template <class TFilter>
void FilterEvents(QObject& watched, TFilter filter) {
    FilterEvents(watched, watched, std::move(filter));
}

// Runs the action at each event of that type, before the object gets it.
template <class TAction>
void OnEvent(QObject& watched, QEvent::Type type, TAction action) {
    FilterEvents(
        watched,
        [type, action = std::move(action)](const QEvent& event) mutable {
            if (event.type() == type)
                action();
            return false;
        });
}

} // namespace tidewell

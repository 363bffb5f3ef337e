#include "desktop/binders/SizeBinder.h"

#include "widgets/Child.h"

#include <QEvent>

#include <utility>

namespace tidewell {

namespace {

class TSizeBinding : public QObject {
  public:
    TSizeBinding(const TViewContext& context, std::function<void()> handler, QObject* parent)
        : QObject(parent), Context(context), Handler(std::move(handler)),
          Released(Context.Hold.Released.Connect([this] {
              if (Due)
                  QMetaObject::invokeMethod(
                      this, [this] { Tell(); }, Qt::QueuedConnection);
          })) {}

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
            Tell();
        return QObject::eventFilter(watched, event);
    }

  private:
    void Tell() {
        Due = Context.Hold.Held();
        if (!Due)
            RunGuarded(Context.Dialogs, Handler);
    }

    const TViewContext Context;
    const std::function<void()> Handler;
    TConnection Released;
    bool Due = false;
};

} // namespace

void OnNewSize(QWidget& widget, const TViewContext& context, std::function<void()> handler) {
    widget.installEventFilter(&NewChild<TSizeBinding>(widget, context, std::move(handler)));
}

} // namespace tidewell

#include "desktop/binders/Bind.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QKeyEvent>
#include <QVariant>
#include <QWidget>

namespace tidewell {

namespace {

class TKeeper : public QObject {
  public:
    TKeeper(TConnection connection, QObject* parent) : QObject(parent), Connection(std::move(connection)) {}

  private:
    TConnection Connection;
};

// A long hint breaks its lines, which a tool tip does for rich text only.
QString ToolTip(const std::string& hint) {
    constexpr qsizetype longest = 60;
    const QString text = ToQt(hint);
    return text.size() > longest ? QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()) : text;
}

// Disabling the widget with the keyboard hands the keyboard on, perhaps along a row of widgets that are
// disabled too. The window remembers the first one, which gets it back when it is enabled again, unless the
// user has gone elsewhere meanwhile.
void Enable(QWidget& view, bool enabled) {
    constexpr const char* lender = "keyboardLender";
    constexpr const char* holder = "keyboardHolder";
    QWidget& window = *view.window();
    const auto id = [](const QWidget* widget) {
        return QVariant::fromValue(reinterpret_cast<quintptr>(widget));
    };
    const bool hadKeyboard = window.focusWidget() == &view;
    if (view.isEnabledTo(view.parentWidget()) == enabled)
        return;
    view.setEnabled(enabled);
    if (!enabled && hadKeyboard) {
        if (window.property(holder) != id(&view))
            window.setProperty(lender, id(&view));
        window.setProperty(holder, id(window.focusWidget()));
    } else if (enabled && window.property(lender) == id(&view)) {
        if (window.property(holder) == id(window.focusWidget()))
            view.setFocus(Qt::OtherFocusReason);
        window.setProperty(lender, QVariant());
        window.setProperty(holder, QVariant());
    }
}

} // namespace

bool IsEnter(const QEvent& event) {
    if (event.type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<const QKeyEvent&>(event).key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

void Keep(QObject& view, TConnection connection) {
    NewChild<TKeeper>(view, std::move(connection));
}

void BindControl(QWidget& view, TControl& control) {
    view.setObjectName(ToQt(control.Name()));
    KeepInStep(
        view, control,
        [&view, &control] {
            if (view.isHidden() == control.Visible())
                view.setVisible(control.Visible());
            Enable(view, control.Enabled());
            view.setToolTip(ToolTip(control.Hint()));
        });
    Keep(view, control.FocusRequested.Connect([&view] { view.setFocus(Qt::OtherFocusReason); }));
}

} // namespace tidewell

#include "desktop/binders/Binding.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QObject>

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

} // namespace

void Keep(QObject& view, TConnection connection) {
    NewChild<TKeeper>(view, std::move(connection));
}

void BindControl(QWidget& view, TControl& control) {
    view.setObjectName(ToQt(control.Name()));
    KeepInStep(view, control, [&view, &control] {
        if (view.isHidden() == control.Visible())
            view.setVisible(control.Visible());
        view.setEnabled(control.Enabled());
        view.setToolTip(ToolTip(control.Hint()));
    });
    Keep(view, control.FocusRequested.Connect([&view] { view.setFocus(Qt::OtherFocusReason); }));
}

} // namespace tidewell

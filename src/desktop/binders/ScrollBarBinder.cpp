#include "desktop/binders/ScrollBarBinder.h"

#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

namespace tidewell {

void BindScrollBar(QScrollBar& view, TScrollBar& bar, IDialogs& dialogs) {
    BindControl(view, bar);
    view.setSingleStep(1);
    KeepInStep(
        view, bar,
        [&] {
            const QSignalBlocker quiet(view);
            view.setRange(0, bar.Max());
            view.setPageStep(std::max(bar.PageSize(), 1));
            view.setValue(bar.Position());
        });
    const auto scroll = [&](EScrollCode code) {
        RunGuarded(
            dialogs, [&] { bar.Scroll(code, view.value()); });
    };
    QObject::connect(
        &view, &QScrollBar::valueChanged, &view,
        [&view, scroll] { scroll(view.isSliderDown() ? EScrollCode::Track : EScrollCode::End); });
    QObject::connect(&view, &QScrollBar::sliderReleased, &view, [scroll] { scroll(EScrollCode::End); });
}

} // namespace tidewell

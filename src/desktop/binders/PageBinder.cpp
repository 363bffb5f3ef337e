#include "desktop/binders/PageBinder.h"

#include "desktop/QtText.h"

#include <QTabWidget>

namespace tidewell {

void BindPages(QTabWidget& view, TPageControl& pages, IDialogs& dialogs) {
    BindControl(view, pages);
    const auto showActive = [&view, &pages] {
        if (view.currentIndex() != pages.ActivePageIndex())
            view.setCurrentIndex(pages.ActivePageIndex());
    };
    for (std::size_t i = 0; i < pages.Pages.size(); ++i) {
        TTabSheet& page = pages.Pages[i];
        const int index = static_cast<int>(i);
        if (QWidget* widget = view.widget(index))
            widget->setObjectName(ToQt(page.Name()));
        KeepInStep(view, page, [&view, &page, index, showActive] {
            view.setTabText(index, ToQt(page.Caption()));
            view.setTabEnabled(index, page.Enabled());
            view.setTabVisible(index, page.Visible());
            showActive();
        });
    }
    KeepInStep(view, pages, showActive);
    QObject::connect(&view, &QTabWidget::currentChanged, &view, [&pages, &dialogs](int index) {
        if (index >= 0)
            RunGuarded(dialogs, [&pages, index] { pages.SetActivePageIndex(index); });
    });
}

} // namespace tidewell

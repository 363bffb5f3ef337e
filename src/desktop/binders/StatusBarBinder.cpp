#include "desktop/binders/StatusBarBinder.h"

#include "desktop/QtText.h"
#include "widgets/PanelBar.h"

namespace tidewell {

void BindStatusBar(TPanelBar& view, TStatusBar& bar) {
    BindControl(view, bar);
    KeepInStep(view, bar, [&view, &bar] {
        std::vector<TPanelBar::TPanelText> panels;
        for (const auto& panel : bar.Panels())
            panels.push_back({panel.Width, ToQt(panel.Text), panel.Centred});
        view.SetPanels(panels);
    });
}

} // namespace tidewell

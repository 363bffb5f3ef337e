#pragma once

#include <QWidget>

class QMenu;

namespace tidewell {

class IDialogs;
class IFiles;
class TGraphPage;

// The graph page: the plot, and a line in its place until there are curves.
class TGraphPageView : public QWidget {
  public:
    TGraphPageView(TGraphPage& page, IDialogs& dialogs, IFiles& files, QWidget* parent);
};

// Scroll bar and zoom buttons, on the panel below the tabs.
void AddGraphControls(QWidget& panel, TGraphPage& page, IDialogs& dialogs);

// The bits of a channel, as the one entry of a menu.
void FillBinaryPopup(QMenu& menu, const TGraphPage& page);

} // namespace tidewell

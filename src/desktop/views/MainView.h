#pragma once

#include "desktop/binders/FormBinder.h"

#include <QMainWindow>

class QPushButton;
class QSplitter;
class QTableView;
class QTabWidget;

namespace tidewell {

class TFormMain;
class TNabtoDevice;
class TPanelBar;

class TMainView : public QMainWindow {
  public:
    TMainView(TFormMain& form, TNabtoDevice& device, const TViewContext& context);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void AddSetpointPage();
    void AddGraphPage();
    void AddErrorLogPage();
    void AddTabButtons();
    void AddStatusBar(TNabtoDevice& device);
    void ArrangeTabButtons();
    void TellPageSize();

    TFormMain& Form;
    const TViewContext Context;
    QTabWidget& Tabs;
    std::vector<QPushButton*> TabButtons; // children of the tab strip's corner
    QSplitter* Group = nullptr;           // the two category panels; a child
    QTableView* Grid = nullptr;           // a child
};

} // namespace tidewell

#pragma once

#include "desktop/binders/FormBinder.h"

#include <QMainWindow>

class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace tidewell {

class TButton;
class TFormMain;
class TProgram;
class TLabel;
class TNabtoDevice;
class TPanel;

class TMainView : public QMainWindow {
  public:
    TMainView(TProgram& program, const TViewContext& context);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void AddSetpointPage();
    void AddGraphPage();
    void AddErrorLogPage();
    void AddNotice(QVBoxLayout& column, TPanel& panel, TLabel& text, TButton& button,
                   TButton* hide = nullptr);
    void AddTabButtons();
    void AddStatusBar(TNabtoDevice& device);
    void ArrangeTabButtons();

    TProgram& Program;
    TFormMain& Form;
    const TViewContext Context;
    QTabWidget& Tabs;
    std::vector<QPushButton*> TabButtons; // children of the tab strip's corner
};

} // namespace tidewell

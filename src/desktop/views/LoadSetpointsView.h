#pragma once

#include "desktop/binders/FormBinder.h"

class QBoxLayout;
class QTableView;

namespace tidewell {

class TButton;
class TLabel;
class TLoadSetpoints;

// In the middle of the screen whenever it comes up. What a run tells is painted at once, since the event loop
// may not run between two writes.
class TLoadSetpointsView : public TDialogView {
  public:
    TLoadSetpointsView(TLoadSetpoints& form, const TViewContext& context);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void AddButtons();
    void AddLists();
    void AddProgress();
    void AddButton(QBoxLayout& row, TButton& button);
    void PaintNow(QWidget& part);

    TLoadSetpoints& Form;
    const TViewContext Context;
    QBoxLayout& Column;
    QTableView& Grid;
    QWidget& Progress;
};

} // namespace tidewell

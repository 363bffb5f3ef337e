#pragma once

#include "desktop/binders/FormBinder.h"

class QLineEdit;
class QSplitter;
class QTableView;

namespace tidewell {

class TBox;
class TMemo;
class TPanel;
class TSetpointPage;

// The tree above the event log on the left; on the right the filter field above the grid. Ctrl+F goes to the
// filter, and Down from there to the grid. Esc empties the filter before it goes to the form, so the view has
// to be made before the form is bound.
class TSetpointPageView : public QWidget {
  public:
    TSetpointPageView(TSetpointPage& page, TPanel& group, TMemo& eventLog, const TViewContext& context,
                      QWidget* parent);

    // Client sizes in pixels: the grid's width, and the height of the group of the two category panels.
    TEvent<int, int> OnResize;

  private:
    void AddGroup(QSplitter& split, TPanel& group, TMemo& eventLog);
    void AddGrid(QSplitter& split);
    void AddFilter(TBox& area);
    void PreviewFilterKey(QKeyEvent& event, bool& handled);
    void TellSize();

    TSetpointPage& Page;
    const TViewContext Context;
    QSplitter* Group = nullptr; // children, here and below
    QTableView* Grid = nullptr;
    QLineEdit* Filter = nullptr;
};

} // namespace tidewell

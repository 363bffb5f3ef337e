#pragma once

#include "desktop/binders/FormBinder.h"

#include <functional>

class QLineEdit;
class QSplitter;
class QTableView;
class QVBoxLayout;

namespace tidewell {

class TMemo;
class TPanel;
class TSetpointPage;

// The tree above the event log on the left; on the right the filter field above the grid. Ctrl+F goes to the
// filter, and Down from there to the grid. Esc empties the filter before it goes to the form, so the view has
// to be made before the form is bound.
class TSetpointPageView : public QWidget {
  public:
    struct TParts {
        TSetpointPage& Page;
        TPanel& PanelGroupSetpoints;
        TMemo& MemoEventLog;
        // Client sizes in pixels, of the grid and of the group of the two category panels.
        std::function<void(int gridClientWidth, int groupClientHeight)> Resized;
    };

    TSetpointPageView(TParts parts, const TViewContext& context, QWidget* parent);

  private:
    void AddGroup(QSplitter& split);
    void AddGrid(QSplitter& split);
    void AddFilter(QWidget& area, QVBoxLayout& column);
    void PreviewFilterKey(QKeyEvent& event, bool& handled);
    void TellSize();

    const TParts Parts;
    const TViewContext Context;
    QSplitter* Group = nullptr; // children, here and below
    QTableView* Grid = nullptr;
    QLineEdit* Filter = nullptr;
};

} // namespace tidewell

#include "desktop/views/SetpointPageView.h"

#include "desktop/binders/CellDelegate.h"
#include "desktop/binders/EditBinder.h"
#include "desktop/binders/GridBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/SizeBinder.h"
#include "desktop/binders/TreeBinder.h"
#include "desktop/views/EmptyLine.h"
#include "setpoints/SetpointPage.h"
#include "widgets/CaptionPanel.h"
#include "widgets/Child.h"
#include "widgets/FormResizer.h"
#include "widgets/RoomyRows.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QSplitter>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

namespace tidewell {

namespace {

constexpr int treeIndent = 19; // pixels, here and below
constexpr int filterMargin = 4;
constexpr int filterWidth = 360;

// Rows with some air. The whole of a long text shows in a tool tip.
class TTreeRows : public TRoomyRows {
  public:
    using TRoomyRows::TRoomyRows;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        return event != nullptr && view != nullptr && event->type() == QEvent::ToolTip &&
               ShowWholeText(*event, *view, option.rect, option.fontMetrics, index.data().toString());
    }
};

} // namespace

TSetpointPageView::TSetpointPageView(TParts parts, const TViewContext& context, QWidget* parent)
    : QWidget(parent), Parts(std::move(parts)), Context(context) {
    auto& row = NewChild<QVBoxLayout>(*this);
    row.setContentsMargins(0, 0, 0, 0);
    auto& split = NewChild<QSplitter>(*this, Qt::Horizontal);
    split.setChildrenCollapsible(false);
    row.addWidget(&split);
    AddGroup(split);
    AddGrid(split);
    auto& resizer = NewChild<TFormResizer>(*this);
    resizer.Add(*Group, {2, 1});
    resizer.Add(split, {1, 3});
    for (QWidget* sized : {static_cast<QWidget*>(Group), Grid->viewport()})
        OnNewSize(*sized, Context, [this] { TellSize(); });
}

void TSetpointPageView::AddGroup(QSplitter& split) {
    Group = &NewChild<QSplitter>(split, Qt::Vertical);
    Group->setChildrenCollapsible(false);
    BindPanel(*Group, Parts.PanelGroupSetpoints);
    auto& treePanel = NewChild<TCaptionPanel>(*Group);
    auto& tree = NewChild<QTreeWidget>(treePanel);
    tree.setIndentation(treeIndent);
    tree.setItemDelegate(&NewChild<TTreeRows>(tree));
    tree.setFrameShape(QFrame::NoFrame);
    treePanel.SetContent(tree);
    BindPanel(treePanel, Parts.Page.CategoryPanelSetpoints);
    BindTree(tree, Parts.Page.SetpointTreeView, Context.Dialogs);
    auto& logPanel = NewChild<TCaptionPanel>(*Group);
    auto& log = NewChild<QPlainTextEdit>(logPanel);
    log.setFrameShape(QFrame::NoFrame);
    logPanel.SetContent(log);
    BindPanel(logPanel, Parts.Page.CategoryPanelDebug);
    BindMemo(log, Parts.MemoEventLog);
}

void TSetpointPageView::AddGrid(QSplitter& split) {
    auto& right = NewChild<QWidget>(split);
    auto& column = NewChild<QVBoxLayout>(right);
    column.setContentsMargins(0, 0, 0, 0);
    TLabel& empty = Parts.Page.LblSetpointPageEmpty;
    AddEmptyLine(column, empty);
    // The line stands in place of the grid.
    auto& area = NewChild<QWidget>(right);
    column.addWidget(&area, 1);
    KeepInStep(area, empty, [&area, &empty] { area.setVisible(!empty.Visible()); });
    auto& areaColumn = NewChild<QVBoxLayout>(area);
    areaColumn.setContentsMargins(0, 0, 0, 0);
    areaColumn.setSpacing(0);
    auto& whoseRows = NewChild<QLabel>(area);
    whoseRows.setMargin(filterMargin);
    whoseRows.setWordWrap(true);
    areaColumn.addWidget(&whoseRows);
    BindLabel(whoseRows, Parts.Page.LblSetpointRows);
    AddFilter(area, areaColumn);
    Grid = &NewChild<QTableView>(area);
    Grid->setFrameShape(QFrame::NoFrame);
    // A bar that comes and goes would change the widths of the columns.
    Grid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    areaColumn.addWidget(Grid);
    BindGrid(*Grid, Parts.Page.SetpointGrid, Context.Dialogs);
}

void TSetpointPageView::AddFilter(QWidget& area, QVBoxLayout& column) {
    auto& row = NewLayout<QHBoxLayout>(column);
    row.setContentsMargins(filterMargin, filterMargin, filterMargin, filterMargin);
    row.setSpacing(2 * filterMargin);
    Filter = &NewChild<QLineEdit>(area);
    Filter->setPlaceholderText(QStringLiteral("Filter by name, unit or address (Ctrl+F)"));
    Filter->setAccessibleName(QStringLiteral("Filter"));
    Filter->setClearButtonEnabled(true);
    Filter->setMaximumWidth(filterWidth);
    row.addWidget(Filter, 1);
    auto& count = NewChild<QLabel>(area);
    row.addWidget(&count);
    row.addStretch();
    BindEdit(*Filter, Parts.Page.SetpointFilter, Context.Dialogs);
    BindLabel(count, Parts.Page.LblSetpointCount);
    // Works while the area is shown, wherever in the window the keyboard is.
    auto& find = NewChild<QShortcut>(area, QKeySequence(QKeySequence::Find));
    connect(
        &find, &QShortcut::activated, this,
        [this] {
            Filter->setFocus(Qt::ShortcutFocusReason);
            Filter->selectAll();
        });
    Keep(*Filter, Context.Application.KeyPreview.Connect(
                      [this](const QWidget& widget, QKeyEvent& event, bool& handled) {
                          if (&widget == Filter && event.modifiers() == Qt::NoModifier)
                              PreviewFilterKey(event, handled);
                      }));
}

void TSetpointPageView::PreviewFilterKey(QKeyEvent& event, bool& handled) {
    switch (event.key()) {
    case Qt::Key_Escape:
        RunGuarded(Context.Dialogs,
                   [&] { handled = !event.isAutoRepeat() && Parts.Page.ClearSetpointFilter(); });
        break;
    case Qt::Key_Down:
        handled = true;
        Grid->setFocus(Qt::OtherFocusReason);
        if (!Grid->selectionModel()->hasSelection())
            Grid->selectRow(0);
        break;
    default:
        break;
    }
}

void TSetpointPageView::TellSize() {
    const int width =
        Grid->isVisible() ? Grid->viewport()->width() : Grid->parentWidget()->parentWidget()->width();
    Parts.Resized(width, Group->height());
}

} // namespace tidewell

#include "desktop/binders/FormBinder.h"
#include "desktop/binders/GridCells.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "setpoints/SetpointPage.h"
#include "widgets/FormResizer.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QShortcut>
#include <QSplitter>

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

template <class TControl>
auto& AddCaptioned(QSplitter& group, TPanel& panel, TControl& control, IDialogs& dialogs) {
    auto& captioned = NewBound<TCaptionPanel>(group, panel, dialogs);
    auto& content = NewBound(captioned, control, dialogs);
    content.setFrameShape(QFrame::NoFrame);
    captioned.SetContent(content);
    return content;
}

// The tree above the event log.
QSplitter& AddGroup(QSplitter& split, TSetpointPage& page, TPanel& panel, TMemo& eventLog,
                    IDialogs& dialogs) {
    auto& group = NewChild<QSplitter>(split, Qt::Vertical);
    group.setChildrenCollapsible(false);
    Bind(group, panel, dialogs);
    QTreeWidget& tree = AddCaptioned(group, page.CategoryPanelSetpoints, page.SetpointTreeView, dialogs);
    tree.setIndentation(treeIndent);
    tree.setItemDelegate(&NewChild<TTreeRows>(tree));
    AddCaptioned(group, page.CategoryPanelDebug, eventLog, dialogs);
    return group;
}

void GoToGrid(QTableView& grid) {
    grid.setFocus(Qt::OtherFocusReason);
    if (!grid.selectionModel()->hasSelection())
        grid.selectRow(0);
}

// Esc and Down in the filter, before the form sees them.
void PreviewKeys(QLineEdit& filter, TSetpointPage& page, QTableView& grid, const TViewContext& context) {
    const auto preview = [&filter, &page, &grid, &dialogs = context.Dialogs](
                             const QWidget& widget, const QKeyEvent& event, bool& handled) {
        if (&widget != &filter || event.modifiers() != Qt::NoModifier)
            return;
        if (event.key() == Qt::Key_Escape) {
            RunGuarded(dialogs, [&] { handled = !event.isAutoRepeat() && page.ClearSetpointFilter(); });
        } else if (event.key() == Qt::Key_Down) {
            handled = true;
            GoToGrid(grid);
        }
    };
    Keep(filter, context.Application.KeyPreview.Connect(preview));
}

QLineEdit& AddFilter(TBox& area, TSetpointPage& page) {
    TBox row = area.AddBox(TBox::Row).Margins(filterMargin).Spacing(2 * filterMargin);
    QLineEdit& filter = row.Add(page.SetpointFilter, 1);
    filter.setPlaceholderText(QStringLiteral("Filter by name, unit or address (Ctrl+F)"));
    filter.setAccessibleName(QStringLiteral("Filter"));
    filter.setClearButtonEnabled(true);
    filter.setMaximumWidth(filterWidth);
    row.Add(page.LblSetpointCount);
    row.AddStretch(0); // the field takes the room first
    // Works while the area is shown, wherever in the window the keyboard is.
    auto& find = NewChild<QShortcut>(area.Parent, QKeySequence(QKeySequence::Find));
    QObject::connect(&find, &QShortcut::activated, &filter, [&filter] {
        filter.setFocus(Qt::ShortcutFocusReason);
        filter.selectAll();
    });
    return filter;
}

QTableView& AddGrid(TBox& column, TSetpointPage& page, const TViewContext& context) {
    TLabel& empty = page.LblSetpointPageEmpty;
    AddEmptyLine(column, empty);
    // The line stands in place of the grid.
    TBox area = column.AddPanel(TBox::Column, 1).Spacing(0);
    KeepInStep(area.Parent, empty, [&view = area.Parent, &empty] { view.setVisible(!empty.Visible()); });
    QLabel& whoseRows = area.Add(page.LblSetpointRows);
    whoseRows.setMargin(filterMargin);
    whoseRows.setWordWrap(true);
    QLineEdit& filter = AddFilter(area, page);
    QTableView& grid = area.Add(page.SetpointGrid);
    grid.setFrameShape(QFrame::NoFrame);
    // A bar that comes and goes would change the widths of the columns.
    grid.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    PreviewKeys(filter, page, grid, context);
    return grid;
}

} // namespace

void FillSetpointPage(QWidget& view, TSetpointPage& page, TPanel& groupPanel, TMemo& eventLog,
                      const TViewContext& context) {
    auto& split = TBox(TBox::Column, view, context.Dialogs).Margins(0).AddWidget<QSplitter>();
    split.setOrientation(Qt::Horizontal);
    split.setChildrenCollapsible(false);
    QSplitter& group = AddGroup(split, page, groupPanel, eventLog, context.Dialogs);
    TBox column = TBox(TBox::Column, NewChild<QWidget>(split), context.Dialogs).Margins(0);
    QTableView& grid = AddGrid(column, page, context);
    auto& resizer = NewChild<TFormResizer>(view);
    resizer.Add(group, {2, 1});
    resizer.Add(split, {1, 3});
    for (QWidget* sized : {static_cast<QWidget*>(&group), grid.viewport()})
        OnNewSize(*sized, context, [&group, &grid, &right = column.Parent, &page] {
            page.ArrangeSetpointPage(grid.isVisible() ? grid.viewport()->width() : right.width(),
                                     group.height());
        });
}

} // namespace tidewell

#include "desktop/views/SetpointPageView.h"

#include "desktop/binders/GridCells.h"
#include "desktop/views/Builder.h"
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

} // namespace

TSetpointPageView::TSetpointPageView(TSetpointPage& page, TPanel& group, TMemo& eventLog,
                                     const TViewContext& context, QWidget* parent)
    : QWidget(parent), Page(page), Context(context) {
    auto& split = TBox(TBox::Column, *this, Context.Dialogs).Margins(0).AddWidget<QSplitter>();
    split.setOrientation(Qt::Horizontal);
    split.setChildrenCollapsible(false);
    AddGroup(split, group, eventLog);
    AddGrid(split);
    auto& resizer = NewChild<TFormResizer>(*this);
    resizer.Add(*Group, {2, 1});
    resizer.Add(split, {1, 3});
    for (QWidget* sized : {static_cast<QWidget*>(Group), Grid->viewport()})
        OnNewSize(*sized, Context, [this] { TellSize(); });
}

void TSetpointPageView::AddGroup(QSplitter& split, TPanel& group, TMemo& eventLog) {
    Group = &NewChild<QSplitter>(split, Qt::Vertical);
    Group->setChildrenCollapsible(false);
    Bind(*Group, group, Context.Dialogs);
    QTreeWidget& tree =
        AddCaptioned(*Group, Page.CategoryPanelSetpoints, Page.SetpointTreeView, Context.Dialogs);
    tree.setIndentation(treeIndent);
    tree.setItemDelegate(&NewChild<TTreeRows>(tree));
    AddCaptioned(*Group, Page.CategoryPanelDebug, eventLog, Context.Dialogs);
}

void TSetpointPageView::AddGrid(QSplitter& split) {
    TBox column = TBox(TBox::Column, NewChild<QWidget>(split), Context.Dialogs).Margins(0);
    TLabel& empty = Page.LblSetpointPageEmpty;
    AddEmptyLine(column, empty);
    // The line stands in place of the grid.
    TBox area = column.AddPanel(TBox::Column, 1).Spacing(0);
    KeepInStep(area.Parent, empty, [&view = area.Parent, &empty] { view.setVisible(!empty.Visible()); });
    QLabel& whoseRows = area.Add(Page.LblSetpointRows);
    whoseRows.setMargin(filterMargin);
    whoseRows.setWordWrap(true);
    AddFilter(area);
    Grid = &area.Add(Page.SetpointGrid);
    Grid->setFrameShape(QFrame::NoFrame);
    // A bar that comes and goes would change the widths of the columns.
    Grid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void TSetpointPageView::AddFilter(TBox& area) {
    TBox row = area.AddBox(TBox::Row).Margins(filterMargin).Spacing(2 * filterMargin);
    Filter = &row.Add(Page.SetpointFilter, 1);
    Filter->setPlaceholderText(QStringLiteral("Filter by name, unit or address (Ctrl+F)"));
    Filter->setAccessibleName(QStringLiteral("Filter"));
    Filter->setClearButtonEnabled(true);
    Filter->setMaximumWidth(filterWidth);
    row.Add(Page.LblSetpointCount);
    row.AddStretch();
    // Works while the area is shown, wherever in the window the keyboard is.
    auto& find = NewChild<QShortcut>(area.Parent, QKeySequence(QKeySequence::Find));
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
        RunGuarded(Context.Dialogs, [&] { handled = !event.isAutoRepeat() && Page.ClearSetpointFilter(); });
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
    OnResize(width, Group->height());
}

} // namespace tidewell

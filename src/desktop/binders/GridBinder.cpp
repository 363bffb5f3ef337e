#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "desktop/binders/GridCells.h"
#include "widgets/Child.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTableView>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int minimumRowHeight = 16; // pixels
constexpr int rowAir = 4;            // above and below the text together

class TGridBinding : public QObject {
  public:
    TGridBinding(QTableView& view, TStringGrid& grid, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), Grid(grid), Dialogs(dialogs), Model(grid, this) {
        View.setModel(&Model);
        View.setItemDelegate(&NewChild<TCellDelegate>(*this, Model));
        FilterEvents(
            View, *this, [this](const QEvent& event) { return ViewEvent(event); });
        FilterEvents(*View.viewport(), *this, [this](const QEvent& event) { return MouseEvent(event); });
        // Not the current index, which moves to the first row when the view just gets the keyboard.
        connect(
            View.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { TakeRow(); });
        connect(View.horizontalHeader(), &QHeaderView::sectionDoubleClicked, this,
                [this] { DoubleClick(0); });
        FitRows();
    }

    void Sync() {
        Syncing = true;
        const auto change = Model.Sync();
        if (change == TGridModel::EChange::Columns || Widths != Grid.ColWidths) {
            Widths = Grid.ColWidths;
            for (std::size_t i = 0; i < Widths.size(); ++i)
                View.setColumnWidth(static_cast<int>(i), Widths[i]);
        }
        SyncSelection(change != TGridModel::EChange::Texts);
        Syncing = false;
    }

  private:
    void FitRows() {
        QHeaderView& rows = *View.verticalHeader();
        const int height = std::max(minimumRowHeight, View.fontMetrics().height() + rowAir);
        rows.setMinimumSectionSize(height);
        rows.setDefaultSectionSize(height);
    }

    void SyncSelection(bool newRows) {
        const int row = Grid.SelectedRow() - 1;
        if (row >= 0) {
            if (!View.selectionModel()->isRowSelected(row))
                View.setCurrentIndex(Model.index(row, 0));
            return;
        }
        if (View.selectionModel()->hasSelection())
            View.selectionModel()->clear();
        if (newRows)
            View.scrollToTop();
    }

    bool ViewEvent(const QEvent& event) {
        if (event.type() == QEvent::FontChange)
            FitRows();
        return event.type() == QEvent::KeyPress && KeyPress(static_cast<const QKeyEvent&>(event));
    }

    bool MouseEvent(const QEvent& event) {
        if (event.type() != QEvent::MouseButtonPress && event.type() != QEvent::MouseButtonDblClick)
            return false;
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        if (mouse.button() != Qt::LeftButton)
            return false;
        const QPoint point = mouse.position().toPoint();
        const QModelIndex index = View.indexAt(point);
        Click(point, index);
        if (event.type() == QEvent::MouseButtonPress)
            return false;
        DoubleClick(index.isValid() ? index.row() + 1 : -1);
        return true;
    }

    void Click(QPoint point, const QModelIndex& index) {
        TCellClick click;
        click.X = point.x();
        click.Y = point.y();
        if (index.isValid()) {
            const QRect cell = View.visualRect(index);
            click.Column = index.column();
            click.Row = index.row() + 1;
            click.Cell = {cell.left(), cell.top(), cell.left() + cell.width(), cell.top() + cell.height()};
        }
        RunGuarded(Dialogs, [&] { Grid.OnClick(click); });
    }

    void DoubleClick(int row) {
        RunGuarded(
            Dialogs, [this, row] { Grid.OnDblClick(row); });
    }

    bool KeyPress(const QKeyEvent& event) {
        if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
            return false;
        if (MoveToRow(event.key()))
            return true;
        const bool enter = IsEnter(event);
        if (!enter && (event.text().isEmpty() || !event.text().at(0).isPrint()))
            return false;
        if (event.isAutoRepeat())
            return true; // of a key held down since a dialog that it closed
        const std::string typed = enter ? "\r" : FromQt(event.text());
        RunGuarded(Dialogs, [&] { Grid.OnKeyPress(typed); });
        return true;
    }

    // Home and End go by rows; while no row is selected, any such key goes to the first row or the last.
    bool MoveToRow(int key) {
        const bool none = !View.selectionModel()->hasSelection();
        const bool first =
            key == Qt::Key_Home ||
            (none && (key == Qt::Key_Down || key == Qt::Key_PageDown || key == Qt::Key_PageUp));
        const bool last = key == Qt::Key_End || (none && key == Qt::Key_Up);
        if (first || last)
            View.setCurrentIndex(Model.index(first ? 0 : Model.rowCount() - 1, 0));
        return first || last;
    }

    void TakeRow() {
        const QModelIndexList rows = View.selectionModel()->selectedRows();
        if (Syncing || rows.isEmpty())
            return;
        RunGuarded(Dialogs, [this, row = rows.constFirst().row() + 1] {
            Grid.SetSelectedRow(row);
            Grid.OnSelectCell(row);
        });
    }

    QTableView& View;
    TStringGrid& Grid;
    IDialogs& Dialogs;
    TGridModel Model;
    std::vector<int> Widths;
    bool Syncing = false;
};

} // namespace

void Bind(QTableView& view, TStringGrid& grid, IDialogs& dialogs) {
    BindControl(view, grid);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setWordWrap(false);
    view.setTextElideMode(Qt::ElideRight);
    view.setTabKeyNavigation(false);
    view.setCornerButtonEnabled(false);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    auto& heading = NewChild<TGridHeading>(view);
    heading.setSectionsClickable(true);
    view.setHorizontalHeader(&heading);
    auto& binding = NewChild<TGridBinding>(view, view, grid, dialogs);
    KeepInStep(view, grid, [&binding] { binding.Sync(); });
}

} // namespace tidewell

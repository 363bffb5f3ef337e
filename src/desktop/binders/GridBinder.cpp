#include "desktop/binders/GridBinder.h"

#include "desktop/QtText.h"
#include "widgets/Child.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QTableView>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int minimumRowHeight = 16; // pixels

class TGridModel : public QAbstractTableModel {
  public:
    TGridModel(const TStringGrid& grid, QObject* parent) : QAbstractTableModel(parent), Grid(grid) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Rows; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Columns; }
    QVariant data(const QModelIndex& index, int role) const override {
        return index.isValid() && role == Qt::DisplayRole ? Text(index.column(), index.row() + 1)
                                                          : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        return orientation == Qt::Horizontal && role == Qt::DisplayRole ? Text(section, 0) : QVariant();
    }

    void Sync() {
        const int rows = std::max(0, static_cast<int>(Grid.Cells.RowCount()) - 1);
        const int columns = static_cast<int>(Grid.Cells.ColCount());
        if (rows != Rows || columns != Columns) {
            beginResetModel();
            Rows = rows;
            Columns = columns;
            endResetModel();
            return;
        }
        if (Columns > 0)
            emit headerDataChanged(Qt::Horizontal, 0, Columns - 1);
        if (Rows > 0 && Columns > 0)
            emit dataChanged(index(0, 0), index(Rows - 1, Columns - 1), {Qt::DisplayRole});
    }

  private:
    QVariant Text(int column, int row) const {
        return ToQt(Grid.Cells.Cell(static_cast<std::size_t>(column), static_cast<std::size_t>(row)));
    }

    const TStringGrid& Grid;
    int Rows = 0;
    int Columns = 0;
};

// The selected row stands out by its font alone: bold and blue.
class TRowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~QStyle::State_HasFocus;
        if (!option->state.testFlag(QStyle::State_Selected))
            return;
        option->state &= ~QStyle::State_Selected;
        option->font.setBold(true);
        const bool dark = option->palette.color(QPalette::Base).lightness() < 128;
        option->palette.setColor(QPalette::Text, dark ? QColor(120, 170, 255) : QColor(Qt::blue));
    }
};

class TGridBinding : public QObject {
  public:
    TGridBinding(QTableView& view, TStringGrid& grid, IDialogs& dialogs, QObject* parent)
        : QObject(parent), View(view), Grid(grid), Dialogs(dialogs), Model(grid, this) {
        View.setModel(&Model);
        View.setItemDelegate(&NewChild<TRowDelegate>(*this));
        View.installEventFilter(this);
        View.viewport()->installEventFilter(this);
        // Not the current index, which moves to the first row when the view just gets the keyboard.
        connect(View.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { TakeRow(); });
        connect(View.horizontalHeader(), &QHeaderView::sectionDoubleClicked, this,
                [this] { DoubleClick(0); });
    }

    void Sync() {
        Syncing = true;
        Model.Sync();
        if (Widths != Grid.ColWidths) {
            Widths = Grid.ColWidths;
            for (std::size_t i = 0; i < Widths.size(); ++i)
                View.setColumnWidth(static_cast<int>(i), Widths[i]);
        }
        const int row = Grid.SelectedRow() - 1;
        if (row < 0)
            View.selectionModel()->clear();
        else if (View.currentIndex().row() != row)
            View.setCurrentIndex(Model.index(row, 0));
        Syncing = false;
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonDblClick && watched == View.viewport()) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const QModelIndex index = View.indexAt(mouse->position().toPoint());
            DoubleClick(index.isValid() ? index.row() + 1 : -1);
            return true;
        }
        if (event->type() == QEvent::KeyPress && watched == &View)
            return KeyPress(*static_cast<QKeyEvent*>(event));
        return QObject::eventFilter(watched, event);
    }

  private:
    void DoubleClick(int row) {
        RunGuarded(Dialogs, [this, row] { Grid.OnDblClick(row); });
    }

    bool KeyPress(const QKeyEvent& event) {
        if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
            return false;
        const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
        if (!enter && (event.text().isEmpty() || !event.text().at(0).isPrint()))
            return false;
        const std::string typed = enter ? "\r" : FromQt(event.text());
        RunGuarded(Dialogs, [&] { Grid.OnKeyPress(typed); });
        return true;
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

void BindGrid(QTableView& view, TStringGrid& grid, IDialogs& dialogs) {
    BindControl(view, grid);
    view.setAlternatingRowColors(true);
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::SingleSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setWordWrap(false);
    view.setTextElideMode(Qt::ElideRight);
    view.setTabKeyNavigation(false);
    view.verticalHeader()->hide();
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(std::max(minimumRowHeight, view.fontMetrics().height() + 4));
    view.horizontalHeader()->setHighlightSections(false);
    view.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto& binding = NewChild<TGridBinding>(view, view, grid, dialogs);
    KeepInStep(view, grid, [&binding] { binding.Sync(); });
}

} // namespace tidewell

#pragma once

#include "core/controls/StringGrid.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QFont>
#include <QHash>
#include <QHeaderView>
#include <QStaticText>
#include <QStringList>
#include <QStyledItemDelegate>

class QHelpEvent;

namespace tidewell {

// The cells of a grid as an item view reads them. Row 0 of the grid is the heading, row 1 the first row.
class TGridModel : public QAbstractTableModel {
  public:
    TGridModel(const TStringGrid& grid, QObject* parent) : QAbstractTableModel(parent), Grid(grid) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Rows; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : Columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // A cell that cannot be drawn shows why.
    TCellLook Look(const QModelIndex& index) const;
    const TStringGrid& Control() const { return Grid; }

    enum class EChange { Texts, Rows, Columns };
    // Tells the views what has come since the last time.
    EChange Sync();

  private:
    QString Heading(int column) const;
    void SyncHeadings();

    const TStringGrid& Grid;
    int Rows = 0;
    int Columns = 0;
    QStringList Headings;
};

// One line of text in each cell, vertically centred, with an end ellipsis when too long. Most texts of a grid
// come again at the next painting, so they are kept laid out.
class TCellTexts {
  public:
    // With the painter's font and pen.
    void Paint(QPainter& painter, const QRect& cell, const QString& text);

    static constexpr int Margin = 4; // pixels beside the text

  private:
    struct TKey {
        QString Text;
        int Width = 0;
        friend bool operator==(const TKey&, const TKey&) = default;
    };
    friend size_t qHash(const TKey& key, size_t seed) { return qHashMulti(seed, key.Text, key.Width); }

    static constexpr int most = 4000;
    QFont Font; // of the texts kept
    QCache<TKey, QStaticText> Kept{most};
};

// Draws the cells of a grid: one line of text on its stripe, with an end ellipsis when too long, or a flat
// check box. The selected row stands out by its font alone.
class TCellDelegate : public QStyledItemDelegate {
  public:
    TCellDelegate(const TGridModel& model, QObject* parent) : QStyledItemDelegate(parent), Model(model) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // The whole text of a cell that shows an ellipsis.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

  private:
    void PaintBox(QPainter& painter, const QStyleOptionViewItem& option, bool checked) const;

    const TGridModel& Model;
    mutable TCellTexts Texts;
    mutable TCellTexts SelectedTexts;
};

// Shows the whole of a text that does not fit its cell of the widget while the mouse stays there; false for
// one that fits.
bool ShowWholeText(const QHelpEvent& event, QWidget& widget, const QRect& cell, const QFontMetrics& metrics,
                   const QString& text);

// The heading row of a grid: flat, in the window's own colours. A text that shows an ellipsis is told whole
// in a tool tip.
class TGridHeading : public QHeaderView {
  public:
    explicit TGridHeading(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

  protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
    bool viewportEvent(QEvent* event) override;

  private:
    QString Text(int section) const;

    mutable TCellTexts Texts;
};

} // namespace tidewell

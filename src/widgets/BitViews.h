#pragma once

#include "core/controls/Control.h"
#include "core/controls/StringGrid.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace tidewell {

// A row of bits, each a box that is green while the bit is set, below a row of slanted names. It changes no
// bit itself: it reports clicks. The arrow keys move between the bits, and Space counts as a click into the
// middle of the box.
class TBitGridView : public QWidget {
  public:
    // Pixels; sizes grow with the font.
    struct TShape {
        std::vector<int> ColWidths;
        int NameHeight = 0;
        int BitHeight = 0;
        int Width = 0;     // of the whole, at least
        int NameAngle = 0; // degrees, counter-clockwise
    };

    // boxOf gives the box of a cell.
    TBitGridView(TShape shape, std::function<TCellRect(const TCellRect&)> boxOf, QWidget* parent = nullptr);

    // One for each column.
    void SetNames(const QStringList& names);
    void SetBits(std::vector<bool> bits);
    // Row 0 is the row of the names.
    TCellRect CellRect(int column, int row) const;

    TEvent<const TCellClick&> OnClick;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    int ColumnCount() const { return static_cast<int>(Shape.ColWidths.size()); }
    int ColumnLeft(int column) const;
    int NameRowHeight() const;
    bool Bit(int column) const;
    QPoint NameStart(int column) const;
    void MoveTo(int column);
    void Describe();
    void Report(int x, int y);
    void PaintName(QPainter& painter, int column) const;
    void PaintBit(QPainter& painter, int column) const;

    const TShape Shape;
    const std::function<TCellRect(const TCellRect&)> BoxOf;
    QStringList Names;
    std::vector<bool> Bits;
    int Current = 0; // column of the keyboard
};

// Rows of bits with their names; a row that begins with '1' stands on lime green. A click closes the window
// that shows them.
class TBitRows : public QWidget {
  public:
    // At least that many pixels wide, and as wide as the rows need.
    TBitRows(std::vector<std::string> rows, int rowHeight, int width, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    std::vector<std::string> Rows;
    int RowHeight;
    int LeastWidth;
};

} // namespace tidewell

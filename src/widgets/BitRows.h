#pragma once

#include <QWidget>

#include <string>
#include <vector>

namespace tidewell {

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

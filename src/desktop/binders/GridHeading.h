#pragma once

#include "desktop/binders/CellTexts.h"

#include <QHeaderView>

namespace tidewell {

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

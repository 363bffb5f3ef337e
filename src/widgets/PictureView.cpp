#include "widgets/PictureView.h"

#include <QPainter>

namespace tidewell {

TPictureView::TPictureView(QWidget* parent) : QWidget(parent) {}

void TPictureView::SetPicture(const QPixmap& picture) {
    Shown = picture;
    update();
}

void TPictureView::paintEvent(QPaintEvent*) {
    if (Shown.isNull())
        return;
    const QSizeF size = QSizeF(Shown.size()).scaled(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(place, Shown, QRectF(Shown.rect()));
}

} // namespace tidewell

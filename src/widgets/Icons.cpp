#include "widgets/Icons.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// The linker leaves out what is in a library and named by nobody. Not to be called from within a namespace.
static void KeepResources() {
    Q_INIT_RESOURCE(icons);
}

namespace tidewell {

namespace {

constexpr int side = 16; // pixels at 100 %

QPixmap Draw(const QString& name, int size) {
    KeepResources();
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(name)).render(&painter);
    return pixmap;
}

} // namespace

QIcon TintedIcon(const QString& name, const QColor& color) {
    QIcon icon;
    for (const int scale : {1, 2}) {
        QPixmap pixmap = Draw(name, side * scale);
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon AppIcon() {
    QIcon icon;
    for (const int size : {16, 22, 32, 48, 64, 128, 256})
        icon.addPixmap(Draw(QStringLiteral("tidewell"), size));
    return icon;
}

} // namespace tidewell

#include "widgets/ScopeExport.h"

#include "widgets/ScopePlot.h"

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace tidewell {

namespace {

constexpr int dotsPerInch = 96;
constexpr double pointsPerInch = 72;

QByteArray SvgOf(TScopePlot& plot, QSize size) {
    QBuffer buffer;
    QSvgGenerator device;
    device.setOutputDevice(&buffer);
    device.setSize(size);
    device.setViewBox(QRect(QPoint(), size));
    device.setResolution(dotsPerInch);
    device.setTitle(QStringLiteral("Graph"));
    plot.Print(device, size, true);
    return buffer.data();
}

QByteArray PdfOf(TScopePlot& plot, QSize size) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter device(&buffer);
        device.setResolution(dotsPerInch);
        device.setPageMargins({});
        device.setPageSize(QPageSize(QSizeF(size) * pointsPerInch / dotsPerInch, QPageSize::Point, QString(),
                                     QPageSize::ExactMatch));
        plot.Print(device, size, true);
    }
    return buffer.data();
}

QByteArray PngOf(TScopePlot& plot, QSize size, double scale) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    PictureOf(plot, size, scale).save(&buffer, "PNG");
    return buffer.data();
}

} // namespace

QImage PictureOf(TScopePlot& plot, QSize size, double scale) {
    QImage image(size * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    plot.Print(image, size, false);
    return image;
}

std::string PictureBytes(TScopePlot& plot, QSize size, double scale, EPictureType type) {
    switch (type) {
    case EPictureType::Svg:
        return SvgOf(plot, size).toStdString();
    case EPictureType::Pdf:
        return PdfOf(plot, size).toStdString();
    default:
        return PngOf(plot, size, scale).toStdString();
    }
}

} // namespace tidewell

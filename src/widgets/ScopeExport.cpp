#include "widgets/ScopeExport.h"

#include "widgets/ScopePlot.h"

#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <QSaveFile>
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

std::string SavePicture(TScopePlot& plot, QSize size, double scale, std::filesystem::path file) {
    if (!file.has_extension())
        file += ".png";
    const QString extension = QString::fromStdString(file.extension().string()).toLower();
    QByteArray bytes;
    if (extension == QLatin1String(".png"))
        bytes = PngOf(plot, size, scale);
    else if (extension == QLatin1String(".svg"))
        bytes = SvgOf(plot, size);
    else if (extension == QLatin1String(".pdf"))
        bytes = PdfOf(plot, size);
    else
        return "Cannot write " + file.string() + ": pictures are .png, .svg or .pdf";
    QSaveFile out(QString::fromStdString(file.string()));
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
        return "Cannot write " + file.string() + ": " + out.errorString().toStdString();
    return {};
}

} // namespace tidewell

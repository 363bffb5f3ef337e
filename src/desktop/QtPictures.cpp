#include "desktop/QtPictures.h"

#include "core/Errors.h"
#include "desktop/QtText.h"

#include <QBuffer>
#include <QImageReader>

namespace tidewell {

void TQtPictures::Check(const std::string& bytes) const {
    Decode(bytes);
}

QImage TQtPictures::Decode(const std::string& bytes) {
    QByteArray content = QByteArray::fromStdString(bytes);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    QImage image = reader.read();
    if (image.isNull())
        throw TError(FromQt(reader.errorString()));
    return image;
}

} // namespace tidewell

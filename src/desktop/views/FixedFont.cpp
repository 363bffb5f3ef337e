#include "desktop/views/FixedFont.h"

#include <QFontDatabase>
#include <QFontInfo>

namespace tidewell {

QFont FixedFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(font).fixedPitch()) // a platform theme may name any font
        font.setFamily(QStringLiteral("monospace"));
    return font;
}

} // namespace tidewell

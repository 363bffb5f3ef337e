#include "desktop/views/SplashView.h"

#include "desktop/binders/SimpleBinders.h"
#include "mainform/Splashscreen.h"
#include "widgets/Child.h"
#include "widgets/PictureView.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>

namespace tidewell {

namespace {

constexpr int footHeight = 34; // pixels

// Light or dark, whichever is read better on that part of the picture.
QColor InkFor(const QPixmap& picture, double from) {
    QImage image = picture.toImage();
    if (image.isNull())
        return QGuiApplication::palette().color(QPalette::WindowText);
    const int top = static_cast<int>(image.height() * from);
    image = image.copy(0, top, image.width(), image.height() - top);
    image = image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image.pixelColor(0, 0).lightness() > 128 ? QColor(20, 40, 60) : QColor(245, 250, 252);
}

} // namespace

TSplashView::TSplashView(TSplashscreen& splash, const TViewContext& context)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setFixedSize(TSplashscreen::InitialWidth, TSplashscreen::InitialHeight);
    auto& picture = NewChild<TPictureView>(*this);
    picture.setGeometry(rect());
    BindImage(picture, splash.logo);

    auto& foot = NewChild<QWidget>(*this);
    foot.setGeometry(0, height() - footHeight, width(), footHeight);
    auto& version = NewChild<QLabel>(foot);
    auto& line = NewChild<QLabel>(foot);
    auto& row = NewChild<QHBoxLayout>(foot);
    row.setContentsMargins(16, 0, 16, 0);
    row.addWidget(&line, 1);
    row.addWidget(&version);
    QPalette ink = foot.palette();
    ink.setColor(QPalette::WindowText,
                 InkFor(picture.Picture(), 1.0 - static_cast<double>(footHeight) / height()));
    foot.setPalette(ink);
    QFont font = foot.font();
    font.setPointSizeF(font.pointSizeF() * 1.15);
    foot.setFont(font);
    BindLabel(version, splash.ver_lab);
    BindLabel(line, splash.infostring);

    if (const QScreen* on = QGuiApplication::primaryScreen())
        move(on->geometry().center() - rect().center());
    BindForm(*this, splash, context);
}

} // namespace tidewell

#pragma once

#include <QImage>
#include <QSize>

#include <string>

namespace tidewell {

class TScopePlot;

QImage PictureOf(TScopePlot& plot, QSize size, double scale);

enum class EPictureType { Png, Svg, Pdf };

// The bytes of a file of that type.
std::string PictureBytes(TScopePlot& plot, QSize size, double scale, EPictureType type);

} // namespace tidewell

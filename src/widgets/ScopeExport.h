#pragma once

#include <QImage>
#include <QSize>

#include <filesystem>
#include <string>

namespace tidewell {

class TScopePlot;

QImage PictureOf(TScopePlot& plot, QSize size, double scale);

// Writes the picture as PNG, SVG or PDF, by the file's extension; one without gets ".png". Returns what went
// wrong, with the file's name, or nothing. A file that was there is replaced whole or not at all.
std::string SavePicture(TScopePlot& plot, QSize size, double scale, std::filesystem::path file);

} // namespace tidewell

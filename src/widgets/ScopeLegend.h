#pragma once

#include "widgets/ScopeColors.h"
#include "widgets/ScopePicture.h"

#include <QFontMetrics>
#include <QRect>

#include <cstddef>
#include <optional>
#include <vector>

class QPainter;

namespace tidewell {

// The list of visible curves with their live values, in columns beside the plot. It grows with its texts and
// shrinks only for other curves, so that the plot does not tremble.
class TScopeLegend {
  public:
    // Places the entries in at most that room and returns the width that they take, 0 without any.
    int Arrange(const TScopePicture& picture, const QFontMetrics& metrics, QSize room);
    // Whether the names still fit the width.
    bool Fits(const TScopePicture& picture, const QFontMetrics& metrics) const;
    // The entries lie below and right of the origin.
    void Paint(QPainter& painter, QPoint origin, const TScopePicture& picture, const TScopeColors& colors,
               std::optional<std::size_t> highlighted) const;
    // The channel whose entry lies there.
    std::optional<std::size_t> EntryAt(QPoint place, QPoint origin) const;
    // Empty for a channel that is not listed.
    QRect EntryRect(std::size_t channel, QPoint origin) const;

  private:
    struct TEntry {
        std::size_t Channel = 0;
        QRect Rect;
    };
    static int NameWidth(const TScopePicture& picture, const QFontMetrics& metrics);

    std::vector<TEntry> Entries;
    std::vector<std::size_t> Listed; // channels, in order
    int EntryWidth = 0;
    bool IsNarrow = false; // for lack of room
};

} // namespace tidewell

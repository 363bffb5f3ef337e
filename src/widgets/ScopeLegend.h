#pragma once

#include "widgets/Colors.h"
#include "widgets/ScopePicture.h"

#include <QFont>
#include <QFontMetrics>
#include <QRect>
#include <QStaticText>
#include <QString>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class QPainter;

namespace tidewell {

// The list of visible curves with their live values, in columns beside the plot. It grows with its texts and
// shrinks only for other curves, so that the plot does not tremble.
class TScopeLegend {
  public:
    // Places the entries in at most that room and returns the width that they take, 0 without any.
    int Arrange(const TScopePicture& picture, const QFont& font, QSize room);
    // Whether the names still fit the width.
    bool Fits(const TScopePicture& picture, const QFont& font);
    // The entries lie below and right of the origin. The painter's font is the one that they were arranged
    // for.
    void Paint(QPainter& painter, QPoint origin, const TScopePicture& picture, const TScopeColors& colors,
               std::optional<std::size_t> highlighted);
    // The channel whose entry lies there.
    std::optional<std::size_t> EntryAt(QPoint place, QPoint origin) const;
    // Empty for a channel that is not listed.
    QRect EntryRect(std::size_t channel, QPoint origin) const;

  private:
    struct TEntry {
        std::size_t Channel = 0;
        QRect Rect;
    };
    // A name, laid out.
    struct TText {
        std::string Name;
        QStaticText Text;
        int Width = 0;
    };
    const TText& TextOf(const TScopePicture& picture, std::size_t channel, const QFont& font);
    // The name shortened before its value, which stays whole where it has room.
    static QString ShortText(const std::string& name, const QFontMetrics& metrics, int width);
    int NameWidth(const TScopePicture& picture, const QFont& font);

    QFont TextFont;
    std::vector<TText> Texts; // by channel
    std::vector<TEntry> Entries;
    std::vector<std::size_t> Listed; // channels, in order
    int EntryWidth = 0;
    bool IsNarrow = false; // for lack of room
};

} // namespace tidewell

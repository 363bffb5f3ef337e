#pragma once

#include <QCache>
#include <QFont>
#include <QHash>
#include <QStaticText>
#include <QString>

namespace tidewell {

// One line of text in each cell, vertically centred, with an end ellipsis when too long. Most texts of a grid
// come again at the next painting, so they are kept laid out.
class TCellTexts {
  public:
    // With the painter's font and pen.
    void Paint(QPainter& painter, const QRect& cell, const QString& text);

    static constexpr int Margin = 4; // pixels beside the text

  private:
    struct TKey {
        QString Text;
        int Width = 0;
        friend bool operator==(const TKey&, const TKey&) = default;
    };
    friend size_t qHash(const TKey& key, size_t seed) { return qHashMulti(seed, key.Text, key.Width); }

    static constexpr int most = 4000;
    QFont Font; // of the texts kept
    QCache<TKey, QStaticText> Kept{most};
};

} // namespace tidewell

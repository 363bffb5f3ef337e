#pragma once

#include "graph/SLScope.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tidewell {

class TTextColumn;

// The texts that tell time and date along the bottom of the plot: a pair that follows the thumb of the scroll
// bar while it is dragged, and five pairs at fixed parts of the view. They stand on the third Y axis.
class TGraphTimeLabels {
  public:
    TGraphTimeLabels(TSLScope& surface, const TTextColumn& time, const TTextColumn& date)
        : graph(surface), TimeText(time), DateText(date) {}

    // Makes them anew, hidden; nothing else may be added to the surface's labels before them.
    void Rebuild();
    void Blank(); // hides and empties the five pairs
    // Puts the five pairs where samples lie below them. Nothing while the thumb is dragged. Throws EListError
    // for a sample without a text.
    void UpdateGraphTimeLabels(std::int64_t sampleCount, std::int64_t zoom);
    // The thumb stands over that sample. Throws EListError as above.
    void Track(std::size_t sample);
    void EndTracking(); // the pair of the thumb is then as Rebuild has made it
    void ClearTracking();
    // After a zoom of the X axis: of all labels, shows up to five pairs that lie in what is shown.
    void AdjustNumberOfLabelsToScreen();

  private:
    struct TPair {
        TSLScopeTextLabel* Time = nullptr; // of the surface; none before Rebuild
        TSLScopeTextLabel* Date = nullptr;
    };
    static void SetVisible(const TPair& pair, bool visible);
    static void Empty(const TPair& pair); // and hidden
    void Place(const TPair& pair, double x, std::size_t sample);

    TSLScope& graph;
    const TTextColumn& TimeText;
    const TTextColumn& DateText;
    TPair GraphScrollInfoLabel;
    std::array<TPair, 5> GraphDataLabels;
    bool ScrollingActive = false;
};

} // namespace tidewell

#pragma once

#include "core/controls/ScrollBar.h"
#include "graph/SLScope.h"
#include "graph/SampleTable.h"
#include "graph/TextColumn.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class TMemo;
class TProfile;
struct TGraphChannelSettings;

// Plots the profile's graph points over the sample index. Every sample is kept in DataLogDataValues; the
// surface holds only every GraphZoomFactor-th of those in the window in view.
class TGraphPage {
  public:
    // The part of the log that begins anew with the graph.
    class ILog {
      public:
        virtual ~ILog() = default;
        // Empties the raw rows and sets DatalogCount to 0.
        virtual void ClearLog() = 0;
    };

    TGraphPage(TProfile& profile, ILog& log, TMemo& memoEventLog);
    TGraphPage(const TGraphPage&) = delete;
    TGraphPage& operator=(const TGraphPage&) = delete;

    // Sets the axes and clears the page; with rebuild also makes the channels anew from the open profile,
    // which has to follow every opening of one. Throws EConvertError for a visibility that is no boolean;
    // that channel is then visible, and all else done.
    void GraphInit(bool rebuild);
    // Throws TError when XAxisJump is 0.
    void ClearGraphPage();
    // A live sample. The line is <number>;<date>;<time>;<values>. Throws EConvertError for a graph point
    // whose fields 3 to 6 are no integers.
    void ExtendGraph(std::string_view line);
    // The same without moving the view. DataLogDataValues gets sampleIndex + 1 samples.
    void AddGraphSample(std::string_view line, std::size_t sampleIndex);
    // Forgets the samples from that one on, with their times and dates.
    void DropSamplesFrom(std::size_t sample);
    // Puts the window of that scroll position on the surface.
    void UpdateTestData(int position);
    void UpdateGraphScrollBar();
    std::size_t GraphSampleCount() const; // 0 without channels
    // Samples in view: XAxisJump * 1.1 * GraphZoomFactor, ties to even.
    std::int64_t GraphSpan() const;
    // What the user made of each channel, in order; Name still bears its value.
    std::vector<TGraphChannelSettings> ChannelSettings() const;

    TSLScope graph;
    TScrollBar GraphScroll{"GraphScroll"};
    TSampleTable DataLogDataValues;      // by channel
    TTextColumn GraphDataLabelsTimeText; // by row of the log
    TTextColumn GraphDataLabelsDateText;
    int XAxisJump = 1000; // samples by which the view jumps at zoom 1
    int GraphZoomFactor = 1;
    bool DatalogFileOpen = false; // the page shows a file and not the live log

  private:
    // Where a channel comes from.
    struct TSource {
        std::string Name;        // of the graph row, as first shown
        bool HasOwnColor = true; // the graph row names a colour
        TColor Color;            // as first shown
    };

    void SetAxes();
    std::string RebuildChannels(); // what is wrong with the profile, if anything
    void DrawChannel(std::size_t channel, std::int64_t start, std::int64_t end);
    void SetView(std::int64_t min, std::int64_t max);

    TProfile& Profile;
    ILog& Log;
    TMemo& MemoEventLog;
    std::vector<TSource> Sources; // one per channel
};

} // namespace tidewell

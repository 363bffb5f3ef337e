#pragma once

#include "core/controls/Menu.h"
#include "core/controls/ScrollBar.h"
#include "core/controls/Simple.h"
#include "graph/GraphTimeLabels.h"
#include "graph/NamedBits.h"
#include "graph/ProfileChannels.h"
#include "graph/SLScope.h"
#include "graph/SampleTable.h"
#include "graph/TextColumn.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IDialogs;
class IWait;
class TIniFile;
class TMemo;
class TGraphRowParser;
class TProfile;

// Data lines "<number>;<date>;<time>;<values>" one by one.
class IDataLines {
  public:
    virtual ~IDataLines() = default;
    virtual std::size_t Count() const = 0;
    // Valid until the next call; empty behind the last line. Throws EInOutError.
    virtual std::string_view Next() = 0;
};

// Plots the profile's graph points over the sample index. Every sample is kept in DataLogDataValues; the
// surface holds only every GraphZoomFactor-th of those in the window in view.
class TGraphPage : public TControls {
  public:
    // The part of the log that begins anew with the graph.
    class ILog {
      public:
        virtual ~ILog() = default;
        // Empties the raw rows and sets DatalogCount to 0. The dates and times of the rows still stand.
        virtual void ClearLog() = 0;
    };

    struct TNeeds {
        TProfile& Profile;
        ILog& Log;
        IDialogs& Dialogs;
        IWait& Wait;
        TMemo& MemoEventLog;
        TProgressBar& FileProgressBar;
    };

    TGraphPage(TForm& form, const TNeeds& needs);

    void TakeTexts(const TIniFile& language);
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
    // Draws all lines but the last, behind nothing: the page must be clear. Throws EListError for fewer than
    // two lines, before which nothing is drawn, and EConvertError as above.
    void DrawGraphDatafromList(IDataLines& lines);
    // Puts the window of that scroll position on the surface.
    void UpdateTestData(int position);
    void UpdateGraphScrollBar();
    std::size_t GraphSampleCount() const; // 0 without channels
    // Samples in view: XAxisJump * 1.1 * GraphZoomFactor, ties to even.
    std::int64_t GraphSpan() const;
    // As told by ProfileChannels.
    std::vector<TGraphChannelSettings> ChannelSettings() const { return ProfileChannels.Settings(); }
    void ApplySettings(const std::vector<TGraphChannelSettings>& settings) {
        ProfileChannels.Apply(settings);
    }

    // By the user.
    void GraphScrollScroll(EScrollCode code, int position);
    void GraphZoomPlusButtonClick();
    void GraphZoomMinusButtonClick();
    // Y value of a channel's point at that position among its drawn points; -1 if there is none.
    double GetChannelYValue(std::size_t index, const TSLDisplayChannel& channel);

    TSLScope graph;
    TLabel LblGraphPageEmpty{*this, "LblGraphPageEmpty"}; // what will appear; hidden while there are curves
    TScrollBar GraphScroll{*this, "GraphScroll"};
    TButton GraphZoomPlusButton{*this, "GraphZoomPlusButton", "+"};
    TButton GraphZoomMinusButton{*this, "GraphZoomMinusButton", "-"};
    TLabel GraphZoomLevelLabel{*this, "GraphZoomLevelLabel", "Zoom: 1"};
    TPopupMenu PopupMenu{*this, "PopupMenu"};
    TMenuItem Graphitems1{*this, "Graphitems1", "Graph toolbar"};
    TMenuItem Hold1{*this, "Hold1", "Hold"};
    TMenuItem zoomall1{*this, "zoomall1", "Zoom all"};
    TMenuItem Cleargraph1{*this, "Cleargraph1", "Clear graph"};
    TMenuItem Exportdatatocsv1{*this, "Exportdatatocsv1", "Export data to csv"};
    TPopupMenu GraphBinaryPopup{*this, "GraphBinaryPopup"}; // drawn from NamedBits
    TMenuItem binaryview1{*this, "binaryview1"};
    TNamedBits NamedBits;
    TSampleTable DataLogDataValues;      // by channel
    TTextColumn GraphDataLabelsTimeText; // by row of the log
    TTextColumn GraphDataLabelsDateText;
    int XAxisJump = 1000; // samples by which the view jumps at zoom 1
    int GraphZoomFactor = 1;
    bool DatalogFileOpen = false;        // the page shows a file and not the live log
    std::string DatalogLastLineSetpoint; // of that file, the last line shown
    std::size_t FileRows = 0;            // rows that came from it; those of a log that goes on follow them
    std::string CurrentLogStartDate;     // date text at the start of the log
    std::size_t CurrentChannelindex = 0; // last channel under the mouse

  private:
    void SetAxes();
    void DrawChannel(std::size_t channel, std::int64_t start, std::int64_t end);
    void SetView(std::int64_t min, std::int64_t max);

    // As AddGraphSample, with the values of the line that the parser has read; names are renewed at the end.
    void AddParsedSample(const TGraphRowParser& parser, std::size_t sampleIndex);
    void RenewNames(const TGraphRowParser& parser);
    bool IsDrawn(std::size_t sample) const; // in the window, and not thinned out
    void ConnectSurface();
    void ConnectMenu();
    void Rezoom(int factor);
    void UpdateGraphTimeLabels();
    void ShowBinaryPopup(double value);
    void graphLegendChannelsItemClick(std::size_t index);
    void graphChannelsClick(std::size_t index, const TSLPoint& point);
    void graphCursorsPositionChange(const TSLPoint& position);
    void graphCustomMouseHitLabel(std::string& text, double value);

    TNeeds Needs;
    TProfileChannels ProfileChannels;
    TGraphTimeLabels TimeLabels{graph, GraphDataLabelsTimeText, GraphDataLabelsDateText};
};

} // namespace tidewell

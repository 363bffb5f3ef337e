#pragma once

#include <memory>

class QMenu;
class QWidget;

namespace tidewell {

class IDialogs;
class IFiles;
class TGraphPage;
class TInputDialog;
class TLoadSetpoints;
class TMemo;
class TNabtoDevice;
class TNabtoLogOn;
class TPanel;
class TProgram;
class TSetpointPage;
class TSetupForm;
class TSplashscreen;
class Tlanguagedialog;
struct TViewContext;

// The window of each form.

// The picture of the start, with the version and what is going on written over its foot.
std::unique_ptr<QWidget> ViewOf(TSplashscreen& splash, const TViewContext& context);
std::unique_ptr<QWidget> ViewOf(TNabtoLogOn& form, const TViewContext& context);
std::unique_ptr<QWidget> ViewOf(Tlanguagedialog& form, const TViewContext& context);
std::unique_ptr<QWidget> ViewOf(TSetupForm& form, const TViewContext& context);
// As wide as the form wishes, but never narrower than what is in it, and in the middle of the screen whenever
// it comes up.
std::unique_ptr<QWidget> ViewOf(TInputDialog& form, const TViewContext& context);
// In the middle of the screen whenever it comes up. What a run tells is painted at once, since the event loop
// may not run between two writes.
std::unique_ptr<QWidget> ViewOf(TLoadSetpoints& form, const TViewContext& context);
// The service form of the link: its state above, what can be done at the left, what it said at the right. Esc
// closes it, Enter does what the button with the keyboard does, else a ping.
std::unique_ptr<QWidget> ViewOf(TNabtoDevice& form, const TViewContext& context);
// The main form with its pages.
std::unique_ptr<QWidget> ViewOf(TProgram& program, const TViewContext& context);

// Parts of the main form's window, laid out on a widget.

// The tree above the event log on the left; on the right the filter field above the grid. Ctrl+F goes to the
// filter, and Down from there to the grid. Esc empties the filter before it goes to the form, so the page has
// to be made before the form is bound.
void FillSetpointPage(QWidget& view, TSetpointPage& page, TPanel& groupPanel, TMemo& eventLog,
                      const TViewContext& context);
// The plot, and a line in its place until there are curves.
void FillGraphPage(QWidget& view, TGraphPage& page, IDialogs& dialogs, IFiles& files);
// Scroll bar and zoom buttons, on the panel below the tabs.
void FillGraphControls(QWidget& panel, TGraphPage& page, IDialogs& dialogs);
// The bits of a channel, as the one entry of a menu.
void FillBinaryPopup(QMenu& menu, const TGraphPage& page);

} // namespace tidewell

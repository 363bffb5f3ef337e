#pragma once

#include <memory>

class QMenu;
class QWidget;

namespace tidewell {

class TFormMain;
class TGraphPage;
class TInputDialog;
class TLoadSetpoints;
class TNabtoDevice;
class TNabtoLogOn;
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
std::unique_ptr<QWidget> ViewOf(TFormMain& form, TNabtoDevice& device, const TViewContext& context);

} // namespace tidewell

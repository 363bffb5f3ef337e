#pragma once

#include "desktop/binders/FormBinder.h"

#include <vector>

class QBoxLayout;
class QVBoxLayout;

namespace tidewell {

class TButton;
class TControl;
class TNabtoDevice;

// The service form of the link: its state above, what can be done at the left, what it said at the right. Esc
// closes it, Enter does what the button with the keyboard does, else a ping.
class TDeviceView : public TDialogView {
  public:
    TDeviceView(TNabtoDevice& form, const TViewContext& context);

  private:
    void AddLink(QVBoxLayout& column);
    void AddActions(QBoxLayout& row);
    void AddStreamDelay(QVBoxLayout& column);
    void AddIdentity(QVBoxLayout& column);
    void AddUpdateStatus(QVBoxLayout& column);
    void AddDebug(QBoxLayout& row);
    QVBoxLayout& AddGroup(QVBoxLayout& column, const std::vector<TControl*>& controls);
    QPushButton& AddButton(QBoxLayout& layout, TButton& button);

    TNabtoDevice& Form;
    const TViewContext Context;
};

} // namespace tidewell

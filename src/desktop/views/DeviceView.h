#pragma once

#include "desktop/binders/FormBinder.h"

class QBoxLayout;
class QVBoxLayout;

namespace tidewell {

class TButton;
class TNabtoDevice;

// The service form of the link: what can be done at the left, what it said at the right.
class TDeviceView : public QWidget {
  public:
    TDeviceView(TNabtoDevice& form, const TViewContext& context);

  private:
    void AddActions(QVBoxLayout& column);
    void AddIdentity(QVBoxLayout& column);
    void AddServicePanels(QVBoxLayout& column);
    void AddDebug(QVBoxLayout& column);
    void AddButton(QBoxLayout& layout, TButton& button);

    TNabtoDevice& Form;
    const TViewContext Context;
};

} // namespace tidewell

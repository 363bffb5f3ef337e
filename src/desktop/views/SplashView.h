#pragma once

#include "desktop/binders/FormBinder.h"

namespace tidewell {

class TSplashscreen;

// The picture of the start, with the version and what is going on written over its foot.
class TSplashView : public QWidget {
  public:
    TSplashView(TSplashscreen& splash, const TViewContext& context);
};

} // namespace tidewell

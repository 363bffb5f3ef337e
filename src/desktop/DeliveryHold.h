#pragma once

#include "core/controls/Signal.h"

namespace tidewell {

// While held, no timer ticks and no form hears of its new size. What fell due meanwhile is kept by its owner
// and delivered by the event loop after Released.
class TDeliveryHold {
  public:
    bool Held() const { return Depth > 0; }

    class TScope {
      public:
        explicit TScope(TDeliveryHold& hold) : Hold(hold) { ++Hold.Depth; }
        ~TScope() {
            if (--Hold.Depth == 0)
                Hold.Released.Emit();
        }
        TScope(const TScope&) = delete;
        TScope& operator=(const TScope&) = delete;

      private:
        TDeliveryHold& Hold;
    };

    // Handlers only post what is due; they run nothing at once and do not throw.
    TSignal<> Released;

  private:
    int Depth = 0;
};

} // namespace tidewell

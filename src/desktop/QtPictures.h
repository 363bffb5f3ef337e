#pragma once

#include "core/ports/IPictures.h"

#include <QImage>

namespace tidewell {

class TQtPictures : public IPictures {
  public:
    void Check(const std::string& bytes) const override;
    // The picture in the bytes of a file, whatever its format; throws TError with the reason if there is
    // none.
    static QImage Decode(const std::string& bytes);
};

} // namespace tidewell

#include "core/Numbers.h"
#include "core/ports/IHttp.h"

namespace tidewell {

std::string THttpReply::Header(const std::string& name) const {
    for (const auto& [key, value] : Headers)
        if (SameText(key, name))
            return value;
    return {};
}

} // namespace tidewell

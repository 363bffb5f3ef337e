#include "fuzz/Fuzz.h"

#include <cstdint>

// TIDEWELL_FEED is what the target does.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tidewell::test::TIDEWELL_FEED({reinterpret_cast<const char*>(data), size});
    return 0;
}

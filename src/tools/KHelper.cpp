#include "tools/KHelper.h"

#include "tools/Processor.h"

#include <exception>
#include <string>

const char* GetCPUIDasString() {
    try {
        static const std::string text = tidewell::ProcessorText();
        return text.c_str();
    } catch (const std::exception&) {
        return "";
    }
}

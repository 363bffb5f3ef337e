#include "tools/Processor.h"

#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string_view>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace tidewell {

namespace {

#if defined(__x86_64__) || defined(__i386__)

// Vendor, signature (family, model, stepping) and brand, as words. All else that the instruction tells may
// differ from core to core, or with the settings of firmware and kernel. Empty for a processor that lacks the
// instruction.
std::string InstructionFields() {
    constexpr unsigned firstBrand = 0x80000002;
    constexpr unsigned lastBrand = 0x80000004;
    std::string fields;
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    const auto add = [&fields](unsigned word) { fields += std::to_string(word) + ";"; };
    if (__get_cpuid(0, &a, &b, &c, &d) == 0)
        return fields;
    for (const unsigned word : {b, d, c})
        add(word);
    if (__get_cpuid(1, &a, &b, &c, &d) != 0)
        add(a);
    for (unsigned leaf = firstBrand; leaf <= lastBrand; ++leaf)
        if (__get_cpuid(leaf, &a, &b, &c, &d) != 0)
            for (const unsigned word : {a, b, c, d})
                add(word);
    return fields;
}

#else

std::string InstructionFields() {
    return {};
}

#endif

std::string FirstLine(const char* path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

std::string Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::string Sha256(std::string_view text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    if (EVP_Digest(text.data(), text.size(), digest.data(), &size, EVP_sha256(), nullptr) != 1)
        throw std::runtime_error("cannot hash");
    std::string hexadecimal;
    for (unsigned index = 0; index < size; ++index) {
        constexpr std::string_view digits = "0123456789ABCDEF";
        hexadecimal += digits[digest[index] >> 4U];
        hexadecimal += digits[digest[index] & 0xFU];
    }
    return hexadecimal;
}

} // namespace

std::string ProcessorFields(std::istream& cpuinfo) {
    std::map<std::string, std::string> values;
    for (std::string line; std::getline(cpuinfo, line);)
        if (const auto colon = line.find(':'); colon != std::string::npos)
            values.emplace(Trimmed(std::string_view(line).substr(0, colon)),
                           Trimmed(std::string_view(line).substr(colon + 1)));
    std::string fields;
    for (const char* const name :
         {"vendor_id", "cpu family", "model", "model name", "stepping", "CPU implementer", "CPU architecture",
          "CPU variant", "CPU part", "CPU revision", "Serial"})
        fields += values[name] + ";";
    return fields;
}

std::string ProcessorText() {
    std::string fields = InstructionFields();
    if (fields.empty()) {
        std::ifstream cpuinfo("/proc/cpuinfo");
        fields = ProcessorFields(cpuinfo);
    }
    // Processors of one kind are told apart by the identity of the installed system, which is not to be shown
    // itself.
    return Sha256("Tidewell processor;" + fields + FirstLine("/etc/machine-id"));
}

} // namespace tidewell

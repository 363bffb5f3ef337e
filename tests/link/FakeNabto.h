#pragma once

#include "core/ports/ILibraryLoader.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tidewell::test {

// A native library that does as it is told and notes every call, in order, with its arguments. One lives at a
// time. Texts that it gave out and that were not freed fail the test.
class TFakeNabto : public ILibraryLoader {
  public:
    TFakeNabto();
    ~TFakeNabto() override;
    TFakeNabto(const TFakeNabto&) = delete;
    TFakeNabto& operator=(const TFakeNabto&) = delete;

    bool Present = true;
    std::set<std::string> Missing; // symbols that it lacks
    std::vector<std::string> Calls;
    // Results of the next calls of a symbol; 0 when there are no more.
    std::map<std::string, std::deque<std::uint8_t>> Results;
    // Answers a URL; nothing for no reply.
    std::function<std::optional<std::string>(const std::string&)> Reply;
    std::function<void()> OnCall; // after each call is noted
    std::string InterfaceError;   // text that goes with a refused interface
    std::vector<std::string> LocalDevices;
    std::deque<std::vector<std::uint8_t>> Chunks; // what the stream gives, read by read
    std::vector<std::uint8_t> Written;

    TLoadedLibrary Load(const std::string& name) override;

    std::uint8_t Call(const std::string& symbol, const std::string& arguments = {});
    char* GiveText(const std::string& text);
    void Free(void* text);
    char** DeviceArray();

  private:
    std::map<void*, std::unique_ptr<std::string>> Given;
    std::vector<char*> Devices;
};

} // namespace tidewell::test

#pragma once

#include "core/Errors.h"
#include "core/ports/IApplication.h"
#include "core/ports/IHttp.h"
#include "core/ports/ILibraryLoader.h"
#include "core/ports/IPictures.h"
#include "core/ports/IProcess.h"

#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

class TFakeApplication : public IApplication {
  public:
    void Terminate() override { IsTerminated = true; }
    bool Terminated() const override { return IsTerminated; }
    void WriteError(const std::string& line) override { Errors.push_back(line); }

    bool IsTerminated = false;
    std::vector<std::string> Errors; // lines on standard error
};

class TFakeProcess : public IProcess {
  public:
    std::optional<std::string> Run(const std::filesystem::path& program,
                                   const std::vector<std::string>& arguments,
                                   const std::filesystem::path&) override {
        Calls.push_back("run " + Text(program, arguments));
        return Output;
    }
    void CloseWindow(const std::string& title) override { Calls.push_back("close " + title); }
    bool Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) override {
        Calls.push_back("start " + Text(program, arguments));
        return CanStart;
    }

    std::vector<std::string> Calls; // in order
    std::optional<std::string> Output;
    bool CanStart = true;

  private:
    static std::string Text(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
        std::string text = program.string();
        for (const auto& argument : arguments)
            text += " [" + argument + "]";
        return text;
    }
};

// Takes anything that starts like a PNG for a picture.
class TFakePictures : public IPictures {
  public:
    void Check(const std::string& bytes) const override {
        if (!bytes.starts_with("\x89PNG"))
            throw TError("Unsupported image format");
    }
};

// Gives the helper library "KHelper" of a machine with the key "0A12C00000000000", and asks another loader
// for the rest.
class TFakeKHelper : public ILibraryLoader {
  public:
    explicit TFakeKHelper(ILibraryLoader* others = nullptr) : Others(others) {}

    bool Present = true;
    bool HasFunction = true;
    int Loaded = 0; // at this time

    TLoadedLibrary Load(const std::string& name) override {
        if (name != "KHelper" && Others != nullptr)
            return Others->Load(name);
        if (name != "KHelper" || !Present)
            return {nullptr, name, "there is none"};
        return {std::make_unique<TLibrary>(*this), name, {}};
    }

  private:
    class TLibrary : public ILibrary {
      public:
        explicit TLibrary(TFakeKHelper& owner) : Owner(owner) { ++Owner.Loaded; }
        ~TLibrary() override { --Owner.Loaded; }
        TLibrary(const TLibrary&) = delete;
        TLibrary& operator=(const TLibrary&) = delete;
        void* Symbol(const std::string& name) const override {
            return Owner.HasFunction && name == "GetCPUIDasString" ? reinterpret_cast<void*>(&Text) : nullptr;
        }

      private:
        static const char* Text() { return "cpu 0A-1b2C"; }
        TFakeKHelper& Owner;
    };
    ILibraryLoader* Others;
};

// Answers each exchange with the next reply, and with none at all once they have run out.
class TScriptedHttp : public IHttp {
  public:
    explicit TScriptedHttp(std::deque<THttpReply> replies = {}) : Replies(std::move(replies)) {}
    THttpReply Exchange(const THttpRequest& request) override {
        Requests.push_back(request);
        if (Replies.empty())
            return {};
        THttpReply reply = Replies.front();
        Replies.pop_front();
        return reply;
    }

    std::deque<THttpReply> Replies;
    std::vector<THttpRequest> Requests;
};

} // namespace tidewell::test

#pragma once

#include "core/Systeminfo.h"
#include "core/ports/IApplication.h"
#include "core/ports/IClock.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/IHttp.h"
#include "core/ports/ILibraryLoader.h"
#include "core/ports/IPictures.h"
#include "core/ports/IProcess.h"
#include "core/ports/ITimers.h"
#include "core/ports/IWait.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tidewell {

// The outside world, as the program is given it. What is referred to must outlive the program.
struct TPorts {
    IDialogs& Dialogs;
    ITimers& Timers;
    IWait& Wait;
    IClock& Clock;
    IFiles& Files;
    ILibraryLoader& Libraries;
    IProcess& Process;
    IApplication& Application;
    IPictures& Pictures;
    // An HTTPS client that trusts the authorities in that PEM file, or the system's if the path is empty.
    std::function<std::unique_ptr<IHttp>(const std::filesystem::path& caFile)> MakeHttp;
};

struct TStartOptions {
    std::filesystem::path Directory;  // the folder to work in, which is also the process's current directory
    std::filesystem::path Executable; // for the start anew after a change of language
    std::vector<std::string> Arguments;
    Tsysteminfo Version;
    std::vector<std::filesystem::path> SpareFolders; // for a log that its own folder does not take, in order
};

} // namespace tidewell

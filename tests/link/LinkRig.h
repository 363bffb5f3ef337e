#pragma once

#include "FakeNabto.h"
#include "core/controls/StatusBar.h"
#include "link/DeviceUse.h"
#include "link/ReadReport.h"
#include "support/IdleSurroundings.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <utility>

namespace tidewell::test {

// A library that answers as it is told, and what the tasks of a driver share.
class TLinkRig : public testing::Test {
  protected:
    TLinkRig(TCurrentInifilesPath paths, std::string address)
        : World(Dialogs, Time, Time, Files, Time, Library, std::move(paths)), device(std::move(address)) {}

    // The library is still called when the fixture that listened is gone.
    ~TLinkRig() override { Library.OnCall = nullptr; }

    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TFakeNabto Library;
    TIdleSurroundings World;
    TUNabto& Nabto = World.Nabto;
    TCurrentInifilesPath& Paths = World.Paths;
    TExtensions& Extensions = World.Extensions;
    bool& Open = World.Program.Open;
    TForm Form{"NabtoDevice"};
    TMemo memoDebug{"memoDebug"};
    TStatusBar StatusBar{Form, "StatusBar", {{1, {}, false}, {1, {}, false}, {1, {}, false}}};
    std::string device;
    TDeviceUse Use;
    TDownloadTexts Texts;
    bool EnableContineousUpdate = false;
    std::filesystem::path CurrentUpdateSWFile;
    const TDeviceServices Services{World.Needs,        Form,   Use,   memoDebug,
                                   StatusBar,          device, Texts, EnableContineousUpdate,
                                   CurrentUpdateSWFile};
};

} // namespace tidewell::test

#pragma once

#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/IProcess.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

// The help document and the page of each help number. Nothing fills it yet, so that F1 stays inert.
struct THelpfileDoc {
    bool Fileexist = false;
    std::filesystem::path DocAndPath;
    std::string Doc;
    std::filesystem::path PDFReaderPrg;
    std::vector<std::string> ParaID; // help numbers of the chosen group, one per row that has one
    std::int32_t currentParaID = 0;  // of the selected row; 0 if none
    struct TPage {
        std::int32_t ParaID = 0;
        int Page = 1;
    };
    std::vector<TPage> Pages;
};

class TContextHelp {
  public:
    TContextHelp(IDialogs& dialogs, const IFiles& files, IProcess& process, TMemo& memoEventLog);

    THelpfileDoc HelpfileDoc;

    // Opens the page of the selected row. errorMissingAdobe is shown when the reader cannot be started.
    void Show(const std::string& errorMissingAdobe);

  private:
    int CurrentPage() const;

    IDialogs& Dialogs;
    const IFiles& Files;
    IProcess& Process;
    TMemo& MemoEventLog;
};

} // namespace tidewell

#pragma once

#include "core/HelpfileDoc.h"
#include "core/controls/Lists.h"
#include "core/ports/IDialogs.h"
#include "core/ports/IFiles.h"
#include "core/ports/IProcess.h"

#include <string>

namespace tidewell {

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

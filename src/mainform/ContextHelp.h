#pragma once

#include "core/HelpfileDoc.h"
#include "core/IniFile.h"
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

    void TakeTexts(const TIniFile& language);
    // Opens the page of the selected row.
    void Show();

  private:
    int CurrentPage() const;

    IDialogs& Dialogs;
    const IFiles& Files;
    IProcess& Process;
    TMemo& MemoEventLog;
    std::string ErrorMissingAdobe; // the reader cannot be started
};

} // namespace tidewell

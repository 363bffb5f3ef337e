#include "mainform/ContextHelp.h"

#include "core/KvSupport.h"
#include "core/LanguageTexts.h"

namespace tidewell {

TContextHelp::TContextHelp(IDialogs& dialogs, const IFiles& files, IProcess& process, TMemo& memoEventLog)
    : Dialogs(dialogs), Files(files), Process(process), MemoEventLog(memoEventLog) {}

int TContextHelp::CurrentPage() const {
    if (HelpfileDoc.currentParaID == 0)
        return 0;
    for (const auto& page : HelpfileDoc.Pages)
        if (page.ParaID == HelpfileDoc.currentParaID)
            return page.Page;
    return 1;
}

void TContextHelp::TakeTexts(const TIniFile& language) {
    ReadTexts(language, "HeadAppl", {{ErrorMissingAdobe, "ErrorMissingAdobe"}});
}

void TContextHelp::Show() {
    if (!HelpfileDoc.Fileexist)
        return;
    const std::string page = std::to_string(CurrentPage());
    const std::string document = HelpfileDoc.DocAndPath.string();
    MemoEventLog.Add("helpfile" + document + " -> page" + page + " ParaIDnum-> " +
                     std::to_string(HelpfileDoc.currentParaID) + " Readerprg " +
                     HelpfileDoc.PDFReaderPrg.string());
    if (FileIsLocked(Files, HelpfileDoc.DocAndPath))
        Process.CloseWindow(HelpfileDoc.Doc + " - Adobe Reader");
    if (!Process.Start(HelpfileDoc.PDFReaderPrg, {"/A", "Page=" + page + "&zoom=100", document}))
        Dialogs.ShowMessage(ErrorMissingAdobe);
}

} // namespace tidewell

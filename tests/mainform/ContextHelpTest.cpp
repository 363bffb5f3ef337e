#include "mainform/ContextHelp.h"

#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct THelp : testing::Test {
    void Fill() {
        Help.TakeTexts(TIniFile("[HeadAppl]\nErrorMissingAdobe=no reader\n"));
        Files.Put("/t/Help/aria.pdf", "");
        Help.HelpfileDoc = {true, "/t/Help/aria.pdf", "aria.pdf", "/reader", {}, 0, {{101, 7}, {102, 9}}};
    }
    TMemoryFiles Files;
    TScriptedDialogs Dialogs;
    TFakeProcess Process;
    TMemo EventLog{"MemoEventLog"};
    TContextHelp Help{Dialogs, Files, Process, EventLog};
};

TEST_F(THelp, IsInertUnlessThereIsAHelpFile) {
    Fill();
    Help.HelpfileDoc.Fileexist = THelpfileDoc().Fileexist;
    Help.Show();
    EXPECT_THAT(Process.Calls, IsEmpty());
    EXPECT_THAT(EventLog.Lines(), IsEmpty());
}

TEST_F(THelp, OpensThePageOfTheSelectedRow) {
    struct TCase {
        std::int32_t ParaID;
        std::string Page;
    };
    Fill();
    for (const auto& test : {TCase{102, "9"}, TCase{500, "1"}, TCase{0, "0"}}) {
        EventLog.Clear();
        Process.Calls.clear();
        Help.HelpfileDoc.currentParaID = test.ParaID;
        Help.Show();
        EXPECT_THAT(EventLog.Lines(),
                    ElementsAre("helpfile/t/Help/aria.pdf -> page" + test.Page + " ParaIDnum-> " +
                                std::to_string(test.ParaID) + " Readerprg /reader"));
        EXPECT_THAT(Process.Calls,
                    ElementsAre("start /reader [/A] [Page=" + test.Page + "&zoom=100] [/t/Help/aria.pdf]"));
    }
}

TEST_F(THelp, ClosesTheReaderThatHoldsTheFileAndTellsWhenItCannotStart) {
    Fill();
    Files.Locked.insert("/t/Help/aria.pdf");
    Process.CanStart = false;
    Dialogs.ExpectMessage("no reader");
    Help.Show();
    EXPECT_THAT(Process.Calls, ElementsAre("close aria.pdf - Adobe Reader",
                                           "start /reader [/A] [Page=0&zoom=100] [/t/Help/aria.pdf]"));
}

} // namespace
} // namespace tidewell::test

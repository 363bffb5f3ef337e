#include "mainform/Languagedialog.h"

#include "core/Errors.h"
#include "support/FakePorts.h"
#include "support/MemoryFiles.h"
#include "support/ScriptedDialogs.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

struct TLanguage : testing::Test {
    TLanguage() {
        Files.Put("/t/cfg/system_x.inn", "; settings\n[System]\nLanguageFile_Current=ENGLISH.lng\nOther=1\n");
        Files.Put("/t/cfg/english.lng",
                  "[Language]\nbutsave=Save\nheader=Language\nbulletheader=Files\nrestart=Restarting\n");
        Files.Put("/t/cfg/deutsch.lng", "");
        Paths.configpath = "/t/cfg";
        Paths.Systemfile = "/t/cfg/system_x.inn";
        Dialog.FormCreate(TIniFile(Files, "/t/cfg/english.lng"));
    }
    TMemoryFiles Files;
    TVirtualTime Time;
    TScriptedDialogs Dialogs;
    TNoLibraries Libraries;
    TFakeProcess Process;
    TFakeApplication Application;
    TFakePictures Pictures;
    TPorts Ports{Dialogs, Time, Time, Time, Files, Libraries, Process, Application, Pictures, {}};
    TStartOptions Options{"/t", "/t/tidewell", {"-devid", "1"}, {}};
    TCurrentInifilesPath Paths;
    Tlanguagedialog Dialog{Ports, Options, Paths};
};

TEST_F(TLanguage, WritesTheChoiceAndStartsAnewWithoutArguments) {
    Dialogs.ExpectForm("languagedialog", [this](TForm& form) {
        EXPECT_EQ(form.Caption(), "Language");
        EXPECT_EQ(Dialog.Button.Caption(), "Save");
        EXPECT_THAT(Dialog.langgroup.Items(), testing::ElementsAre("deutsch.lng", "english.lng"));
        EXPECT_EQ(Dialog.langgroup.ItemIndex(), 1);
        Dialog.langgroup.ClickItem(0);
        Dialogs.ExpectMessage("Restarting");
        Dialog.Button.Click();
    });
    Dialogs.ShowModal(Dialog);
    EXPECT_EQ(Files.Content["/t/cfg/system_x.inn"],
              "; settings\n[System]\nLanguageFile_Current=deutsch.lng\nOther=1\n");
    EXPECT_THAT(Process.Calls, testing::ElementsAre("start /t/tidewell"));
    EXPECT_TRUE(Application.IsTerminated);
}

TEST_F(TLanguage, SelectsNothingWhenTheCurrentFileIsGone) {
    Files.Content["/t/cfg/system_x.inn"] = "[System]\nLanguageFile_Current=dansk.lng\n";
    Dialog.FormShow();
    EXPECT_EQ(Dialog.langgroup.ItemIndex(), -1);
    EXPECT_THROW(Dialog.Button.Click(), EListError);
    EXPECT_FALSE(Application.IsTerminated);
}

TEST_F(TLanguage, GoesOnWhenTheChoiceCannotBeWritten) {
    Dialog.FormShow();
    Dialog.langgroup.ClickItem(0);
    Files.Unwritable.insert("/t/cfg");
    EXPECT_THROW(Dialog.Button.Click(), EInOutError);
    EXPECT_FALSE(Application.IsTerminated);
    EXPECT_THAT(Process.Calls, testing::IsEmpty());
}

TEST_F(TLanguage, KeepsTheChoiceAndSaysSoWhenTheProgramCannotStartAnew) {
    Process.CanStart = false;
    Dialog.FormShow();
    Dialog.langgroup.ClickItem(0);
    Dialogs.ExpectMessage("Restarting");
    try {
        Dialog.Button.Click();
        ADD_FAILURE() << "a start that failed went unseen";
    } catch (const TError& error) {
        EXPECT_STREQ(error.what(), "Cannot start /t/tidewell");
    }
    EXPECT_THAT(Files.Content["/t/cfg/system_x.inn"], testing::HasSubstr("LanguageFile_Current=deutsch.lng"));
}

} // namespace
} // namespace tidewell::test

#include "errorlog/ErrorLog.h"

#include "core/Configuration.h"
#include "core/Paths.h"
#include "core/controls/Form.h"
#include "model/ModbusPanel.h"
#include "model/Profile.h"
#include "rig/IdleProgram.h"
#include "rig/Test.h"

// How the page comes to stand is told by the running program.
namespace tidewell::test {
namespace {

TEST(ErrorLog, DecodesTheWordsOfEvents) {
    TForm form{"FormMain"};
    TMemoryFiles files;
    TVirtualTime time;
    TIdleLog idle;
    TErrorLogSettings settings;
    TProfile profile{files};
    TModbusPanel panel{files, time};
    TPageControl pages{"TheTab"};
    const TCurrentInifilesPath paths{{}, {}, {}, {}, "/app"};
    TErrorLog log(form, {idle, files, time, paths, settings, profile, panel, pages});
    // The page without its stamp.
    const auto decoded = [&](std::string_view words) {
        try {
            log.EvalErrorlog(std::string(words), "as far as it came");
        } catch (const EListError&) {
            log.Memo.Add("cut");
        }
        return Join(std::span(log.Memo.Lines()).subspan(1), "|");
    };
    const std::string none = "Time 00:00 Date 00/00 2000 Errornumber 00 OFF";
    const std::string end = "|as far as it came|File saved in userlog directory";
    ExpectRows(decoded, {"1; -> cut", "no end -> cut", "0;0;0; -> Number1 " + none + "|cut"});
    EXPECT_TRUE(files.List("/app/log/userlog", "*").empty());
    ExpectRows(decoded,
               {"0;x;0;1; -> Number1 " + none + "|Number2 Time 00:00 Date 00/00 2000 Errornumber 00 ON" + end,
                "0;36864; -> Number1 Time 24:00 Date 00/00 2000 Errornumber 00 OFF" + end,
                "65535;65535; -> Number1 Time 42:35 Date 31/15 2127 Errornumber 63 ON" + end});
    settings.doIncludeValuesInFile = true;
    ExpectRows(decoded, {"0;x; -> DataValues for calculation -> MoDy 0 MinErr x|Number1 " + none + end});
}

} // namespace
} // namespace tidewell::test

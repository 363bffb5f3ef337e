#include "Picture.h"
#include "core/DiskFiles.h"

#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include <filesystem>
#include <string>
#include <vector>

namespace tidewell::test {

namespace {

const std::vector<std::string> linked = {"-devid", "410000000001", "-LoginUserPW", "service;tidewell"};

// In the main form: starts the log, and shows a group of the device's setpoints with that row selected.
void ShowSetpoints(QWidget& window, TStage stage, int group, int row) {
    Press(Qt::Key_F6);
    stage.Screen.Advance(20000);
    auto& tree = *window.findChild<QTreeWidget*>("SetpointTreeView");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.visualItemRect(tree.topLevelItem(0)->child(group)).center());
    auto& grid = *window.findChild<QTableView*>("SetpointGrid");
    grid.selectRow(row - 1);
    grid.setFocus();
}

std::function<void(TStage)> EditSetpoint(int group, int row) {
    return [group, row](TStage stage) {
        stage.Robot.On("FormMain", [group, row, stage](QWidget& window) {
            ShowSetpoints(window, stage, group, row);
            Press(Qt::Key_Return);
        });
    };
}

// A list of which one address is unknown, and one value is refused.
void LoadSetpoints(TStage stage) {
    stage.Robot.On("FormMain", [stage](QWidget&) {
        TProgramOnScreen& screen = stage.Screen;
        const std::filesystem::path golden = "tests/scenario/golden/setpoints/aria450.csv";
        std::string list = TDiskFiles().Read(TIDEWELL_SOURCE_DIR / golden);
        list.replace(list.find(";40104;"), 7, ";49104;");
        screen.Files.Put("/opt/tidewell/setpoint/aria450.csv", list);
        screen.Nabto.FindController(screen.Arguments.at(1))
            ->Faults.Replace({{EFault::RefuseWrite, 3, "", {.Address = 107}}});
        TProgram& program = *screen.Program;
        program.SetpointPage.SelectedSetpointParent = "Device Aria 450";
        program.LoadSetpoints.LoadForm("/opt/tidewell/setpoint/aria450.csv");
        screen.Desktop.Dialogs.ShowModal(program.LoadSetpoints);
    });
}

} // namespace

std::vector<TPicture> SetpointPictures() {
    return {
        {"setpoints",
         "FormMain",
         linked,
         {},
         [](QWidget& window, TStage stage) { ShowSetpoints(window, stage, 0, 6); }},
        {"setpoints-filter",
         "FormMain",
         linked,
         {},
         [](QWidget& window, TStage stage) {
             ShowSetpoints(window, stage, 0, 3);
             Press(Qt::Key_F, Qt::ControlModifier);
             Type("mode");
             QTest::qWait(300); // the button that empties the field fades in
         }},
        {"input-number", "InputDialog", linked, EditSetpoint(0, 6), [](QWidget&, TStage) { Type("21,5"); }},
        {"input-bits", "InputDialog", linked, EditSetpoint(0, 9), {}},
        {"input-characters", "InputDialog", linked, EditSetpoint(0, 11), {}},
        {"load", "LoadSetpoints", linked, LoadSetpoints,
         [](QWidget&, TStage) {
             Press(Qt::Key_Down);
             Press(Qt::Key_Down);
             Press(Qt::Key_Space);
         }},
        {"load-result", "LoadSetpoints", linked, LoadSetpoints,
         [](QWidget& window, TStage stage) {
             stage.Robot.On("MessageBox", [](QWidget&) { Type("\n"); });
             QTest::mouseClick(window.findChild<QWidget*>("ButWriteSetpoints"), Qt::LeftButton);
         }},
    };
}

} // namespace tidewell::test

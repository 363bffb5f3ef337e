#include "setpoints/SetpointPage.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"
#include "support/VirtualTime.h"

#include <gmock/gmock.h>

#include <string>

namespace tidewell::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SetpointPage : public testing::Test {
  protected:
    void Load(const std::string& profile) {
        Files.Put("/t/p.pls", profile);
        Panel.SetMpanelWorkingpath("/t");
        Panel.SetMpanelPLSpath("/t/p.pls");
        Panel.InitQuestionStringlistStructures();
        Page.BuildSetpointTree();
    }

    TMemoryFiles Files;
    TVirtualTime Time;
    TModbusPanel Panel{Files, Time};
    TSetpointPage Page{Panel};
};

std::string ListRow(const std::string& name, const std::string& group) {
    return name + ";1;0;9;0;0;7;3;1;;;;;;" + group + ";;;";
}

} // namespace

TEST_F(SetpointPage, BuildsTheTree) {
    Load("[MainDevice]\nEnable=1\nR1=1;3;0;1;First;\nR2=1;3;0;1;Second;\n"
         "[OffDevice]\nEnable=0\nR1=2;3;0;1;Missing\n"
         "[BareDevice]\nEnable=1\n"
         "[First]\nA=" +
         ListRow("c", "Air") + "\nB=" + ListRow("b", " Air ") + "\nC=" + ListRow("a", "Heat") +
         "\nD=" + ListRow("d", "0") + "\nE=" + ListRow("e", "") +
         "\nF=short;\n[Second]\nA=" + ListRow("x", "Air") + "\n");
    const auto& roots = Page.SetpointTreeView.Nodes();
    ASSERT_EQ(roots.size(), 3U);
    EXPECT_EQ(roots[0].Text, "MainDevice");
    EXPECT_THAT(roots[0].Children, ElementsAre("Heat", "Air", "Air"));
    EXPECT_EQ(roots[1].Text, "0"); // the list's name took in the device's
    EXPECT_THAT(roots[1].Children, IsEmpty());
    EXPECT_EQ(roots[2].Text, "BareDevice");

    Load("");
    EXPECT_TRUE(Page.SetpointTreeView.Nodes().empty());
}

TEST_F(SetpointPage, ArrangesItsParts) {
    int expanded = 0;
    const auto connection = Page.SetpointTreeView.ExpandAllRequested.Connect([&] { ++expanded; });
    Page.CategoryPanelDebug.SetCollapsed(true);
    Page.ArrangeSetpointPage(718, 301);
    EXPECT_THAT(Page.SetpointGrid.ColWidths, ElementsAre(303, 101, 101, 101, 101));
    EXPECT_EQ(Page.CategoryPanelSetpoints.Height(), 200);
    EXPECT_EQ(Page.CategoryPanelDebug.Height(), 100);
    EXPECT_FALSE(Page.CategoryPanelDebug.Collapsed());
    EXPECT_EQ(expanded, 1);
}

TEST_F(SetpointPage, AppliesDataLinesWhenReady) {
    int painted = 0;
    const auto connection = Page.SetpointGrid.Changed.Connect([&] { ++painted; });
    Page.SetpointValues = {"0;Air;40;-10.0;9;1;0;7;4;1;"};
    Page.ApplyDataLine("1;d;t;5;-5;");
    EXPECT_THAT(Page.CurrentSetpointValue, IsEmpty());
    EXPECT_EQ(painted, 0);
    Page.SetpointListReady = true;
    Page.ApplyDataLine("1;d;t;5;-5;");
    EXPECT_THAT(Page.CurrentSetpointValue, ElementsAre("-0.5"));
    EXPECT_EQ(painted, 1);
    Page.SetpointValues = {"0;Air;40;zero;9;1;0;7;4;1;"};
    EXPECT_THROW(Page.ApplyDataLine("1;d;t;5;-5;"), EConvertError);
}

} // namespace tidewell::test

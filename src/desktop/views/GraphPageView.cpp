#include "core/ChosenFile.h"
#include "core/Guard.h"
#include "core/Numbers.h"
#include "core/ports/IFiles.h"
#include "desktop/QtText.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "graph/GraphPage.h"
#include "widgets/BitViews.h"
#include "widgets/ScopeView.h"

#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QWidgetAction>

#include <array>
#include <functional>
#include <string>
#include <utility>

namespace tidewell {

namespace {

constexpr int controlsHeight = 20; // pixels, and the width of the buttons
constexpr int controlsGap = 6;

// Left goes left; the toolkit's own bar takes that key as Up.
class TKeyedScrollBar : public QScrollBar {
  public:
    using QScrollBar::QScrollBar;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Left)
            triggerAction(SliderSingleStepSub);
        else if (event->key() == Qt::Key_Right)
            triggerAction(SliderSingleStepAdd);
        else
            QScrollBar::keyPressEvent(event);
    }
};

struct TPictureChoice {
    EPictureType Type;
    const char* Caption;
    const char* Ending;
};
constexpr std::array pictureChoices{TPictureChoice{EPictureType::Png, "PNG", ".png"},
                                    TPictureChoice{EPictureType::Svg, "SVG", ".svg"},
                                    TPictureChoice{EPictureType::Pdf, "PDF", ".pdf"}};

// The type is the one chosen, whatever the name looks like; a name that does not end so is given its ending.
void SavePicture(IDialogs& dialogs, IFiles& files, const std::function<std::string(EPictureType)>& bytes) {
    TFileDialog dialog;
    dialog.Title = "Save the picture";
    for (const TPictureChoice& choice : pictureChoices)
        dialog.Filters.push_back({choice.Caption, std::string("*") + choice.Ending});
    std::size_t filter = 0;
    auto file = dialogs.SaveFile(dialog, filter);
    if (!file)
        return;
    const TPictureChoice& choice = pictureChoices.at(filter);
    if (!SameText(file->extension().string(), choice.Ending)) {
        file = WithEnding(files, dialogs, *std::move(file), choice.Ending);
        if (!file)
            return;
    }
    const auto writer = files.Replace(*file);
    writer->Write(bytes(choice.Type));
    writer->Commit();
}

} // namespace

void FillGraphPage(QWidget& view, TGraphPage& page, IDialogs& dialogs, IFiles& files) {
    TBox column = TBox(TBox::Column, view, dialogs).Margins(0);
    AddEmptyLine(column, page.LblGraphPageEmpty);
    auto& graph = NewChild<TScopeView>(view, page.graph);
    graph.OnSavePicture = [&dialogs, &files](const std::function<std::string(EPictureType)>& bytes) {
        RunGuarded(dialogs, [&] { SavePicture(dialogs, files, bytes); });
    };
    graph.setObjectName(QStringLiteral("graph"));
    column.Layout.addWidget(&graph, 1);
    KeepInStep(graph, page.LblGraphPageEmpty,
               [&page, &graph] { graph.setVisible(!page.LblGraphPageEmpty.Visible()); });
}

void FillGraphControls(QWidget& panel, TGraphPage& page, IDialogs& dialogs) {
    panel.setFixedHeight(controlsHeight);
    TBox row = TBox(TBox::Row, panel, dialogs).Margins(0).Spacing(0);
    auto& scroll = NewChild<TKeyedScrollBar>(panel, Qt::Horizontal);
    scroll.setFixedHeight(controlsHeight);
    scroll.setFocusPolicy(Qt::StrongFocus);
    Bind(scroll, page.GraphScroll, dialogs);
    row.Layout.addWidget(&scroll, 1);
    QLabel& level = row.Add(page.GraphZoomLevelLabel);
    level.setFixedHeight(controlsHeight);
    level.setContentsMargins(controlsGap, 0, controlsGap, 0);
    for (TButton* button : {&page.GraphZoomMinusButton, &page.GraphZoomPlusButton})
        row.Add<QPushButton>(*button).setFixedSize(controlsHeight, controlsHeight);
}

void FillBinaryPopup(QMenu& menu, const TGraphPage& page) {
    menu.setObjectName(ToQt(page.GraphBinaryPopup.Name()));
    auto& rows = NewChild<TBitRows>(menu, page.NamedBits.BinaryGraphList, TNamedBits::RowHeight,
                                    page.NamedBits.Width());
    rows.setObjectName(QStringLiteral("BinaryGraphList"));
    auto& action = NewChild<QWidgetAction>(menu);
    action.setObjectName(ToQt(page.binaryview1.Name()));
    action.setDefaultWidget(&rows);
    menu.addAction(&action);
}

} // namespace tidewell

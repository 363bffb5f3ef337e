#include "desktop/views/GraphPageView.h"

#include "desktop/QtText.h"
#include "desktop/binders/ScrollBarBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "graph/GraphPage.h"
#include "widgets/BitRows.h"
#include "widgets/Child.h"
#include "widgets/ScopeView.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWidgetAction>

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

TScopeView::TServices ServicesBy(IDialogs& dialogs) {
    return {[&dialogs]() -> std::optional<std::filesystem::path> {
                TFileDialog dialog;
                dialog.Title = "Save the picture";
                dialog.Filters = {{"PNG", "*.png"}, {"SVG", "*.svg"}, {"PDF", "*.pdf"}};
                auto file = dialogs.SaveFile(dialog);
                if (!file || file->has_extension())
                    return file;
                *file += ".png"; // the dialog has asked about the name as it was typed
                std::error_code unknown;
                if (std::filesystem::exists(*file, unknown) &&
                    dialogs.ShowMessageBox(EMessageKind::Confirmation,
                                           file->string() + " already exists. Replace it?",
                                           EButtons::YesNo) != EModalResult::Yes)
                    return std::nullopt;
                return file;
            },
            [&dialogs](const std::string& text) {
                dialogs.ShowMessageBox(EMessageKind::Error, text, EButtons::Ok);
            }};
}

} // namespace

TGraphPageView::TGraphPageView(TGraphPage& page, IDialogs& dialogs, QWidget* parent) : QWidget(parent) {
    auto& column = NewChild<QVBoxLayout>(*this);
    column.setContentsMargins(0, 0, 0, 0);
    auto& line = NewChild<QLabel>(*this);
    line.setAlignment(Qt::AlignCenter);
    line.setWordWrap(true);
    QPalette grey = line.palette();
    grey.setColor(QPalette::WindowText, grey.color(QPalette::PlaceholderText));
    line.setPalette(grey);
    column.addWidget(&line, 1);
    BindLabel(line, page.LblGraphPageEmpty);
    auto& graph = NewChild<TScopeView>(*this, page.graph, ServicesBy(dialogs));
    graph.setObjectName(QStringLiteral("graph"));
    column.addWidget(&graph, 1);
    KeepInStep(graph, page.LblGraphPageEmpty,
               [&page, &graph] { graph.setVisible(!page.LblGraphPageEmpty.Visible()); });
}

void AddGraphControls(QWidget& panel, TGraphPage& page, IDialogs& dialogs) {
    panel.setFixedHeight(controlsHeight);
    auto& row = NewChild<QHBoxLayout>(panel);
    row.setContentsMargins(0, 0, 0, 0);
    row.setSpacing(0);
    auto& scroll = NewChild<TKeyedScrollBar>(panel, Qt::Horizontal);
    scroll.setFixedHeight(controlsHeight);
    scroll.setFocusPolicy(Qt::StrongFocus);
    BindScrollBar(scroll, page.GraphScroll, dialogs);
    row.addWidget(&scroll, 1);
    auto& level = NewChild<QLabel>(panel);
    level.setFixedHeight(controlsHeight);
    level.setContentsMargins(controlsGap, 0, controlsGap, 0);
    BindLabel(level, page.GraphZoomLevelLabel);
    row.addWidget(&level);
    for (TButton* button : {&page.GraphZoomMinusButton, &page.GraphZoomPlusButton}) {
        auto& view = NewChild<QPushButton>(panel);
        view.setFixedSize(controlsHeight, controlsHeight);
        BindButton(view, *button, dialogs);
        row.addWidget(&view);
    }
}

void FillBinaryPopup(QMenu& menu, const TGraphPage& page) {
    menu.setObjectName(ToQt(page.GraphBinaryPopup.Name()));
    auto& rows = NewChild<TBitRows>(menu, page.BinaryView.BinaryGraphList, TBinaryView::RowHeight,
                                    page.BinaryView.Width());
    rows.setObjectName(QStringLiteral("BinaryGraphList"));
    auto& action = NewChild<QWidgetAction>(menu);
    action.setObjectName(ToQt(page.binaryview1.Name()));
    action.setDefaultWidget(&rows);
    menu.addAction(&action);
}

} // namespace tidewell

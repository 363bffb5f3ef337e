#include "desktop/views/MainView.h"

#include "desktop/binders/GridBinder.h"
#include "desktop/binders/ListBinders.h"
#include "desktop/binders/MenuBinder.h"
#include "desktop/binders/PageBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/StatusBarBinder.h"
#include "desktop/binders/TreeBinder.h"
#include "link/NabtoDevice.h"
#include "mainform/FormMain.h"
#include "widgets/CaptionPanel.h"
#include "widgets/Child.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FormResizer.h"
#include "widgets/LedView.h"
#include "widgets/PanelBar.h"
#include "widgets/RoomyButton.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStyledItemDelegate>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int treeIndent = 19; // pixels, here and below
constexpr int controlsPanelHeight = 20;
constexpr int buttonGap = 20;
constexpr int buttonEdge = 4; // from the window's right edge
constexpr int buttonTop = 2;

// Rows with some air.
class TRowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 4);
    }
};

// The one line of a page that has nothing to show yet.
QLabel& AddEmptyLine(QVBoxLayout& column, QWidget& page, TLabel& label) {
    auto& line = NewChild<QLabel>(page);
    line.setAlignment(Qt::AlignCenter);
    line.setWordWrap(true);
    QPalette grey = line.palette();
    grey.setColor(QPalette::WindowText, grey.color(QPalette::PlaceholderText));
    line.setPalette(grey);
    column.addWidget(&line, 1);
    BindLabel(line, label);
    return line;
}

} // namespace

TMainView::TMainView(TFormMain& form, TNabtoDevice& device, const TViewContext& context)
    : Form(form), Context(context), Tabs(NewChild<QTabWidget>(*this)) {
    setMinimumSize(640, 360);
    BindMainMenu(*menuBar(), Form.MainMenu, Context.Dialogs);

    auto& centre = NewChild<QWidget>(*this);
    auto& column = NewChild<QVBoxLayout>(centre);
    column.setContentsMargins(0, 0, 0, 0);
    column.setSpacing(0);
    Tabs.setDocumentMode(true);
    column.addWidget(&Tabs, 1);
    auto& controls = NewChild<QWidget>(centre);
    controls.setFixedHeight(controlsPanelHeight);
    column.addWidget(&controls);
    setCentralWidget(&centre);
    BindPanel(controls, Form.GraphControlsPanel);

    AddSetpointPage();
    AddGraphPage();
    AddErrorLogPage();
    BindPages(Tabs, Form.TheTab, Context.Dialogs);
    AddTabButtons();
    AddStatusBar(device);
    BindForm(*this, Form, Context);
}

void TMainView::AddSetpointPage() {
    auto& setpoints = Form.SetpointPage;
    auto& page = NewChild<QWidget>(Tabs);
    auto& row = NewChild<QVBoxLayout>(page);
    row.setContentsMargins(0, 0, 0, 0);
    auto& split = NewChild<QSplitter>(page, Qt::Horizontal);
    split.setChildrenCollapsible(false);
    row.addWidget(&split);

    Group = &NewChild<QSplitter>(split, Qt::Vertical);
    BindPanel(*Group, Form.PanelGroupSetpoints);
    Group->setChildrenCollapsible(false);
    auto& treePanel = NewChild<TCaptionPanel>(*Group);
    auto& tree = NewChild<QTreeWidget>(treePanel);
    tree.setIndentation(treeIndent);
    tree.setItemDelegate(&NewChild<TRowDelegate>(tree));
    tree.setFrameShape(QFrame::NoFrame);
    treePanel.SetContent(tree);
    BindPanel(treePanel, setpoints.CategoryPanelSetpoints);
    BindTree(tree, setpoints.SetpointTreeView, Context.Dialogs);
    auto& logPanel = NewChild<TCaptionPanel>(*Group);
    auto& log = NewChild<QPlainTextEdit>(logPanel);
    log.setFrameShape(QFrame::NoFrame);
    logPanel.SetContent(log);
    BindPanel(logPanel, setpoints.CategoryPanelDebug);
    BindMemo(log, Form.MemoEventLog);

    auto& right = NewChild<QWidget>(split);
    auto& column = NewChild<QVBoxLayout>(right);
    column.setContentsMargins(0, 0, 0, 0);
    AddEmptyLine(column, right, Form.LblSetpointPageEmpty);
    // The line stands in place of the grid.
    auto& area = NewChild<QWidget>(right);
    auto& areaColumn = NewChild<QVBoxLayout>(area);
    areaColumn.setContentsMargins(0, 0, 0, 0);
    column.addWidget(&area, 1);
    KeepInStep(area, Form.LblSetpointPageEmpty,
               [this, &area] { area.setVisible(!Form.LblSetpointPageEmpty.Visible()); });
    Grid = &NewChild<QTableView>(area);
    Grid->setFrameShape(QFrame::NoFrame);
    areaColumn.addWidget(Grid);
    BindGrid(*Grid, setpoints.SetpointGrid, Context.Dialogs);

    auto& resizer = NewChild<TFormResizer>(*this);
    resizer.Add(*Group, {2, 1});
    resizer.Add(split, {1, 3});
    Group->installEventFilter(this);
    Grid->viewport()->installEventFilter(this);
    Tabs.addTab(&page, QString());
}

void TMainView::AddGraphPage() {
    auto& page = NewChild<QWidget>(Tabs);
    auto& column = NewChild<QVBoxLayout>(page);
    AddEmptyLine(column, page, Form.LblGraphPageEmpty);
    Tabs.addTab(&page, QString());
}

void TMainView::AddErrorLogPage() {
    auto& memo = NewChild<QPlainTextEdit>(Tabs);
    memo.setFrameShape(QFrame::NoFrame);
    BindMemo(memo, Form.ErrorLog.Memo);
    auto& page = NewChild<QWidget>(Tabs);
    auto& column = NewChild<QVBoxLayout>(page);
    column.setContentsMargins(0, 0, 0, 0);
    column.addWidget(&memo);
    Tabs.addTab(&page, QString());
}

void TMainView::AddTabButtons() {
    auto& corner = NewChild<QWidget>(Tabs);
    auto& row = NewChild<QHBoxLayout>(corner);
    row.setContentsMargins(buttonGap, buttonTop, buttonEdge, buttonTop);
    row.setSpacing(buttonGap);
    for (TButton* button : {&Form.but_errorlog, &Form.but_swupdate, &Form.DeviceID, &Form.TrafficButton}) {
        auto& view = NewChild<TRoomyButton>(corner);
        row.addWidget(&view);
        BindButton(view, *button, Context.Dialogs);
        TabButtons.push_back(&view);
    }
    Tabs.setCornerWidget(&corner, Qt::TopRightCorner);
    Tabs.tabBar()->installEventFilter(this);
    ArrangeTabButtons();
}

void TMainView::AddStatusBar(TNabtoDevice& device) {
    auto& bar = NewChild<TPanelBar>(*this);
    setStatusBar(&bar);
    BindStatusBar(bar, Form.StatusBar);
    bar.SetBarHeight(TFormMain::StatusBarHeight);
    auto& led = NewChild<TLedView>(bar);
    BindLed(led, device.LedNabto);
    bar.Place(TFormMain::PanelLink, led,
              [](const QRect& panel) { return QRect(panel.topLeft(), QSize(16, panel.height())); });
    const auto behindLed = [](const QRect& panel) {
        return QRect(panel.x() + 20, panel.y() + 1, panel.width() - 24, panel.height() - 1);
    };
    auto& link = NewChild<TElidedLabel>(bar);
    BindLabel(link, device.LblNabto);
    link.SetElideMode(Qt::ElideMiddle); // the id stands first, what goes on last
    bar.Place(TFormMain::PanelLink, link, behindLed);
    auto& user = NewChild<TElidedLabel>(bar);
    BindLabel(user, device.lblConnectedUser);
    bar.Place(TFormMain::PanelUser, user, behindLed);
    auto& progress = NewChild<QProgressBar>(bar);
    BindProgressBar(progress, Form.FileProgressBar);
    bar.Place(TFormMain::PanelProgress, progress, [](const QRect& panel) {
        return QRect(panel.topLeft(), QSize(qMin(panel.right() / 2, panel.width()), panel.height()));
    });
}

void TMainView::ArrangeTabButtons() {
    const int height = Tabs.tabBar()->height() - 2 * buttonTop;
    for (QPushButton* button : TabButtons)
        button->setFixedHeight(qMax(height, fontMetrics().height() + 2));
}

void TMainView::TellPageSize() {
    if (Context.Hold.Held() || Grid == nullptr || Group == nullptr)
        return;
    const int width =
        Grid->isVisible() ? Grid->viewport()->width() : Grid->parentWidget()->parentWidget()->width();
    RunGuarded(Context.Dialogs, [this, width] { Form.SetpointPageResized(width, Group->height()); });
}

bool TMainView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        if (watched == Tabs.tabBar())
            ArrangeTabButtons();
        else
            TellPageSize();
    }
    return QMainWindow::eventFilter(watched, event);
}

void TMainView::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    TellPageSize();
}

} // namespace tidewell

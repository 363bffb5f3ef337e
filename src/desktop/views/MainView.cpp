#include "desktop/views/MainView.h"

#include "desktop/binders/ListBinders.h"
#include "desktop/binders/MenuBinder.h"
#include "desktop/binders/PageBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "desktop/binders/StatusBarBinder.h"
#include "desktop/views/FixedFont.h"
#include "desktop/views/GraphPageView.h"
#include "desktop/views/SetpointPageView.h"
#include "link/NabtoDevice.h"
#include "mainform/Program.h"
#include "widgets/Child.h"
#include "widgets/ElidedLabel.h"
#include "widgets/LedView.h"
#include "widgets/PanelBar.h"
#include "widgets/RoomyButton.h"

#include <QEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int buttonGap = 20; // pixels, here and below
constexpr int buttonEdge = 4; // from the window's right edge
constexpr int buttonTop = 2;
constexpr int noticeMargin = 6;
constexpr int memoMargin = 8;

} // namespace

TMainView::TMainView(TProgram& program, const TViewContext& context)
    : Program(program), Form(program.FormMain), Context(context), Tabs(NewChild<QTabWidget>(*this)) {
    setMinimumSize(480, 280); // fits a screen of 1280 by 720 at 200 %
    BindMainMenu(*menuBar(), Form.MainMenu, Context.Dialogs);

    auto& centre = NewChild<QWidget>(*this);
    auto& column = NewChild<QVBoxLayout>(centre);
    column.setContentsMargins(0, 0, 0, 0);
    column.setSpacing(0);
    Tabs.setDocumentMode(true);
    column.addWidget(&Tabs, 1);
    auto& controls = NewChild<QWidget>(centre);
    AddGraphControls(controls, Program.GraphPage, Context.Dialogs);
    column.addWidget(&controls);
    setCentralWidget(&centre);
    BindPanel(controls, Form.GraphControlsPanel);
    AddNotice(column, Form.ReadBackPanel, Form.LblReadBack, Form.ButStopReadBack);
    AddNotice(column, Form.UpdatePanel, Form.LblUpdate, Form.ButShowUpdate);
    for (TNotice* notice : Form.Notices)
        AddNotice(column, *notice, notice->Text, notice->Action, &notice->Hide);

    AddSetpointPage();
    AddGraphPage();
    AddErrorLogPage();
    BindPages(Tabs, Form.TheTab, Context.Dialogs);
    AddTabButtons();
    AddStatusBar(Program.NabtoDevice);
    BindForm(*this, Form, Context);
}

void TMainView::AddSetpointPage() {
    const TSetpointPageView::TParts parts{Program.SetpointPage, Form.PanelGroupSetpoints, Form.MemoEventLog,
                                          [this](int gridClientWidth, int groupClientHeight) {
                                              Program.SetpointPage.ArrangeSetpointPage(gridClientWidth,
                                                                                       groupClientHeight);
                                          }};
    Tabs.addTab(&NewChild<TSetpointPageView>(Tabs, parts, Context), QString());
}

// What goes on, and what can be done about it.
void TMainView::AddNotice(QVBoxLayout& column, TPanel& panel, TLabel& text, TButton& button, TButton* hide) {
    auto& frame = NewChild<QFrame>(*column.parentWidget());
    frame.setAutoFillBackground(true);
    frame.setBackgroundRole(QPalette::ToolTipBase);
    frame.setForegroundRole(QPalette::ToolTipText);
    column.addWidget(&frame);
    auto& row = NewChild<QHBoxLayout>(frame);
    row.setContentsMargins(noticeMargin, noticeMargin, noticeMargin, noticeMargin);
    auto& label = NewChild<QLabel>(frame);
    label.setWordWrap(true);
    row.addWidget(&label, 1);
    BindLabel(label, text);
    auto& push = NewChild<TRoomyButton>(frame);
    row.addWidget(&push);
    BindButton(push, button, Context.Dialogs);
    if (hide) { // as wide as its sign wants
        auto& cross = NewChild<QPushButton>(frame);
        cross.setFixedWidth(2 * fontMetrics().height());
        row.addWidget(&cross);
        BindButton(cross, *hide, Context.Dialogs);
    }
    BindPanel(frame, panel);
}

void TMainView::AddGraphPage() {
    Tabs.addTab(&NewChild<TGraphPageView>(Tabs, Program.GraphPage, Context.Dialogs, Context.Files),
                QString());
}

void TMainView::AddErrorLogPage() {
    auto& memo = NewChild<QPlainTextEdit>(Tabs);
    memo.setFrameShape(QFrame::NoFrame);
    memo.setFont(FixedFont());
    memo.document()->setDocumentMargin(memoMargin);
    BindMemo(memo, Program.ErrorLog.Memo);
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
    bar.Place(
        TFormMain::PanelLink, led,
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

bool TMainView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        ArrangeTabButtons();
    return QMainWindow::eventFilter(watched, event);
}

} // namespace tidewell

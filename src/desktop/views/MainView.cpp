#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "mainform/Program.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QTabBar>
#include <QTabWidget>

namespace tidewell {

namespace {

constexpr int buttonGap = 20; // pixels, here and below
constexpr int buttonEdge = 4; // from the window's right edge
constexpr int buttonTop = 2;
constexpr int noticeMargin = 6;
constexpr int memoMargin = 8;

// What goes on, and what can be done about it.
TBox AddNotice(TBox& column, TPanel& panel, TLabel& text, TButton& button) {
    auto& frame = column.AddWidget<QFrame>();
    frame.setAutoFillBackground(true);
    frame.setBackgroundRole(QPalette::ToolTipBase);
    frame.setForegroundRole(QPalette::ToolTipText);
    Bind(frame, panel, column.Dialogs);
    TBox row = TBox(TBox::Row, frame, column.Dialogs).Margins(noticeMargin);
    row.Add(text, 1).setWordWrap(true);
    row.Add(button);
    return row;
}

void AddNotices(TBox& column, TFormMain& form) {
    AddNotice(column, form.ReadBackPanel, form.LblReadBack, form.ButStopReadBack);
    AddNotice(column, form.UpdatePanel, form.LblUpdate, form.ButShowUpdate);
    for (TNotice* notice : form.Notices) {
        TBox row = AddNotice(column, *notice, notice->Text, notice->Action);
        QWidget& cross = row.Add<QPushButton>(notice->Hide);
        cross.setFixedWidth(2 * cross.window()->fontMetrics().height()); // as its sign wants
    }
}

void AddSetpointPage(QTabWidget& tabs, TProgram& program, const TViewContext& context) {
    auto& page = NewChild<QWidget>(tabs);
    FillSetpointPage(page, program.SetpointPage, program.FormMain.PanelGroupSetpoints,
                     program.FormMain.MemoEventLog, context);
    tabs.addTab(&page, QString());
}

void AddGraphPage(QTabWidget& tabs, TGraphPage& graphPage, const TViewContext& context) {
    auto& page = NewChild<QWidget>(tabs);
    FillGraphPage(page, graphPage, context.Dialogs, context.Files);
    tabs.addTab(&page, QString());
}

void AddErrorLogPage(QTabWidget& tabs, TErrorLog& errorLog, IDialogs& dialogs) {
    TBox column = TBox(TBox::Column, NewChild<QWidget>(tabs), dialogs).Margins(0);
    QPlainTextEdit& memo = column.Add(errorLog.Memo);
    memo.setFrameShape(QFrame::NoFrame);
    memo.setFont(FixedFont());
    memo.document()->setDocumentMargin(memoMargin);
    tabs.addTab(&column.Parent, QString());
}

void AddTabButtons(QTabWidget& tabs, TFormMain& form, IDialogs& dialogs) {
    TBox row = TBox(TBox::Row, NewChild<QWidget>(tabs), dialogs);
    row.Margins(buttonGap, buttonTop, buttonEdge, buttonTop).Spacing(buttonGap);
    std::vector<QPushButton*> buttons;
    for (TButton* button : {&form.but_errorlog, &form.but_swupdate, &form.DeviceID, &form.TrafficButton})
        buttons.push_back(&row.Add(*button));
    tabs.setCornerWidget(&row.Parent, Qt::TopRightCorner);
    const auto arrange = [&tabs, buttons] {
        const int height = tabs.tabBar()->height() - 2 * buttonTop;
        for (QPushButton* button : buttons)
            button->setFixedHeight(qMax(height, tabs.window()->fontMetrics().height() + 2));
    };
    OnEvent(*tabs.tabBar(), QEvent::Resize, arrange);
    arrange();
}

void AddStatusBar(QMainWindow& view, TFormMain& form, TNabtoDevice& device, IDialogs& dialogs) {
    auto& bar = NewBound<TPanelBar>(view, form.StatusBar, dialogs);
    view.setStatusBar(&bar);
    bar.SetBarHeight(TFormMain::StatusBarHeight);
    bar.Place(
        TFormMain::PanelLink, NewBound(bar, device.LedNabto, dialogs),
        [](const QRect& panel) { return QRect(panel.topLeft(), QSize(16, panel.height())); });
    const auto behindLed = [](const QRect& panel) {
        return QRect(panel.x() + 20, panel.y() + 1, panel.width() - 24, panel.height() - 1);
    };
    auto& link = NewBound<TElidedLabel>(bar, device.LblNabto, dialogs);
    link.SetElideMode(Qt::ElideMiddle); // the id stands first, what goes on last
    bar.Place(TFormMain::PanelLink, link, behindLed);
    bar.Place(TFormMain::PanelUser, NewBound<TElidedLabel>(bar, device.lblConnectedUser, dialogs), behindLed);
    bar.Place(TFormMain::PanelProgress, NewBound(bar, form.FileProgressBar, dialogs), [](const QRect& panel) {
        return QRect(panel.topLeft(), QSize(qMin(panel.right() / 2, panel.width()), panel.height()));
    });
}

} // namespace

std::unique_ptr<QWidget> ViewOf(TProgram& program, const TViewContext& context) {
    TFormMain& form = program.FormMain;
    auto view = std::make_unique<QMainWindow>();
    IDialogs& dialogs = context.Dialogs;
    view->setMinimumSize(480, 280); // fits a screen of 1280 by 720 at 200 %
    auto& tabs = NewChild<QTabWidget>(*view);
    tabs.setDocumentMode(true);
    Bind(*view->menuBar(), form.MainMenu, dialogs);
    TBox column = TBox(TBox::Column, NewChild<QWidget>(*view), dialogs).Margins(0).Spacing(0);
    column.Layout.addWidget(&tabs, 1);
    auto& controls = column.AddWidget<QWidget>();
    FillGraphControls(controls, program.GraphPage, dialogs);
    view->setCentralWidget(&column.Parent);
    Bind(controls, form.GraphControlsPanel, dialogs);
    AddNotices(column, form);
    AddSetpointPage(tabs, program, context);
    AddGraphPage(tabs, program.GraphPage, context);
    AddErrorLogPage(tabs, program.ErrorLog, dialogs);
    Bind(tabs, form.TheTab, dialogs);
    AddTabButtons(tabs, form, dialogs);
    AddStatusBar(*view, form, program.NabtoDevice, dialogs);
    // last: the filter of the setpoint page sees Esc before the form
    Bind(*view, form, context);
    return view;
}

} // namespace tidewell

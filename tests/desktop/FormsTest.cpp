#include "Support.h"
#include "core/controls/Simple.h"
#include "desktop/binders/Bind.h"
#include "desktop/binders/FormBinder.h"
#include "widgets/Child.h"

namespace tidewell::test {

namespace {

// A form with a field and a button that closes it with OK.
class FormsTest : public testing::Test {
  protected:
    FormsTest() {
        Ok.OnClick = [this] { Form.SetModalResult(EModalResult::Ok); };
        Desk.Dialogs.RegisterView(Form, [this] {
            auto view = std::make_unique<TDialogView>();
            auto& column = NewChild<QVBoxLayout>(*view);
            const auto add = [&](auto& widget, auto& control) {
                column.addWidget(&widget);
                Bind(widget, control, Desk.Dialogs);
            };
            add(NewChild<QLineEdit>(*view), Edit);
            add(NewChild<QPushButton>(*view), Ok);
            Bind(*view, Form, TViewContext{Application(), Desk.Dialogs, Desk.Hold, Files});
            return view;
        });
    }
    ~FormsTest() override { Desk.Dialogs.DestroyViews(); }

    QWidget& View() { return *Desk.Dialogs.FindView(Form); }
    QLineEdit& Field() { return Child<QLineEdit>(View(), "Edit"); }
    // Once the form is shown.
    void Later(const std::function<void()>& action) { QTimer::singleShot(20, &Guard, action); }

    TTestDesk Desk;
    TRobot Robot;
    TMemoryFiles Files;
    TForm Form{"SmallForm", "Small"};
    TEdit Edit{"Edit"};
    TButton Ok{"Ok", "OK"};
    QObject Guard;
};

} // namespace

TEST_F(FormsTest, AModalFormEndsByItsResultItsFrameOrEscUnlessItRefuses) {
    int shown = 0;
    int asked = 0;
    Form.OnShow = [&] { ++shown; };
    const auto ends = [this](const std::function<void()>& action) {
        Later(action);
        const EModalResult result = Desk.Dialogs.ShowModal(Form);
        EXPECT_FALSE(View().isVisible());
        return result;
    };
    EXPECT_EQ(ends([this] { Child<QPushButton>(View(), "Ok").click(); }), EModalResult::Ok);
    EXPECT_EQ(ends([this] { View().close(); }), EModalResult::Cancel);
    EXPECT_EQ(ends([this] { Press("Esc", &Field()); }), EModalResult::Cancel);
    EXPECT_EQ(shown, 3);
    Form.OnCloseQuery = [&](bool& mayClose) { mayClose = ++asked > 2; };
    EXPECT_EQ(ends([this] {
                  View().close();
                  EXPECT_TRUE(View().isVisible());
                  Form.SetModalResult(EModalResult::Ok); // refused as well
                  Later([this] { Form.SetModalResult(EModalResult::Yes); });
              }),
              EModalResult::Yes);
    EXPECT_EQ(asked, 3);
}

TEST_F(FormsTest, TheFormSeesKeysOnceAndFirst) {
    std::vector<EKey> keys;
    Form.OnKeyDown = [&](EKey key, bool& handled) {
        keys.push_back(key);
        handled = key == EKey::F2;
    };
    Desk.Dialogs.Show(Form);
    Press("F2 F12 Return Alt+F4 A", &Field());
    Hold(View(), Qt::Key_F2);
    EXPECT_EQ(keys, (std::vector{EKey::F2, EKey::F12, EKey::Return}));
    EXPECT_EQ(Edit.Text(), "a");
}

TEST_F(FormsTest, SizesGoBothWaysButNotDuringASleep) {
    Form.SetClientSize(300, 200);
    int resized = 0;
    Desk.Dialogs.Show(Form);
    QCoreApplication::processEvents();
    EXPECT_EQ(View().size(), QSize(300, 200));
    Form.OnResize = [&] { ++resized; };
    View().resize(320, 210);
    EXPECT_EQ(Form.ClientWidth(), 320);
    {
        const auto held = Desk.Hold.Hold();
        View().resize(330, 220);
        Form.SetCaption("unmoved"); // does not bring the old size back
        EXPECT_EQ(View().width(), 330);
        EXPECT_EQ(resized, 1);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(Form.ClientHeight(), 220);
    EXPECT_EQ(resized, 2);
}

TEST_F(FormsTest, WhatIsThrownIsToldAndTheFormStays) {
    Form.OnShow = [] { throw TError("no texts"); };
    Robot.On<QMessageBox>("MessageBox", [this](QMessageBox& box) {
        EXPECT_EQ(box.parentWidget(), &View()); // which nobody has activated yet
        EXPECT_EQ(box.text(), "no texts");
        box.accept();
        Later([this] { Form.SetModalResult(EModalResult::Ok); });
    });
    EXPECT_EQ(Desk.Dialogs.ShowModal(Form), EModalResult::Ok);
    struct TThrower : QObject {
        bool event(QEvent*) override { throw TError("from an event"); }
    } thrower;
    std::string text;
    Application().OnException = [&](const std::exception& error) { text = error.what(); };
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&thrower, &event);
    EXPECT_EQ(text, "from an event");
}

} // namespace tidewell::test

#include "Support.h"
#include "core/controls/Simple.h"
#include "desktop/binders/Bind.h"
#include "desktop/binders/FormBinder.h"
#include "widgets/Child.h"

namespace tidewell::test {

namespace {

// A form with a field and a button that closes it with OK.
struct TSmallForm : TForm {
    TSmallForm() : TForm("SmallForm", "Small") {
        OnKeyDown = [this](EKey key, bool& handled) {
            Keys.push_back(key);
            handled = key == EKey::F2;
        };
        Ok.OnClick = [this] { SetModalResult(EModalResult::Ok); };
    }
    TEdit Edit{"Edit"};
    TButton Ok{"Ok", "OK"};
    std::vector<EKey> Keys;
};

struct TSmallView : TDialogView {
    TSmallView(TSmallForm& form, const TViewContext& context) {
        auto& column = NewChild<QVBoxLayout>(*this);
        column.addWidget(&Field);
        column.addWidget(&Button);
        Bind(Field, form.Edit, context.Dialogs);
        Bind(Button, form.Ok, context.Dialogs);
        Bind(*this, form, context);
    }
    QLineEdit& Field = NewChild<QLineEdit>(*this);
    QPushButton& Button = NewChild<QPushButton>(*this);
};

class FormsTest : public testing::Test {
  protected:
    FormsTest() {
        Desk.Dialogs.RegisterView(Form, [this] { return std::make_unique<TSmallView>(Form, Context); });
    }
    ~FormsTest() override { Desk.Dialogs.DestroyViews(); }

    TSmallView& View() { return *static_cast<TSmallView*>(Desk.Dialogs.FindView(Form)); }
    // Once the form is shown.
    void Later(const std::function<void()>& action) { QTimer::singleShot(20, &Guard, action); }

    TTestDesk Desk;
    TRobot Robot;
    TMemoryFiles Files;
    TViewContext Context{Application(), Desk.Dialogs, Desk.Hold, Files};
    TSmallForm Form;
    QObject Guard;
};

} // namespace

TEST_F(FormsTest, AModalFormEndsByItsResultItsFrameOrEscUnlessItRefuses) {
    int shown = 0;
    int asked = 0;
    Form.OnShow = [&] { ++shown; };
    Later([this] { View().Button.click(); });
    EXPECT_EQ(Desk.Dialogs.ShowModal(Form), EModalResult::Ok);
    EXPECT_FALSE(View().isVisible());
    Later([this] { View().close(); });
    EXPECT_EQ(Desk.Dialogs.ShowModal(Form), EModalResult::Cancel);
    Later([this] { QTest::keyClick(&View().Field, Qt::Key_Escape); });
    EXPECT_EQ(Desk.Dialogs.ShowModal(Form), EModalResult::Cancel);
    EXPECT_EQ(shown, 3);
    Form.OnCloseQuery = [&](bool& mayClose) { mayClose = ++asked > 2; };
    Later([this] {
        View().close();
        EXPECT_TRUE(View().isVisible());
        Form.SetModalResult(EModalResult::Ok); // refused as well
        Later([this] { Form.SetModalResult(EModalResult::Yes); });
    });
    EXPECT_EQ(Desk.Dialogs.ShowModal(Form), EModalResult::Yes);
    EXPECT_EQ(asked, 3);
}

TEST_F(FormsTest, TheFormSeesKeysOnceAndFirst) {
    Desk.Dialogs.Show(Form);
    QTest::keyClick(&View().Field, Qt::Key_F2);
    QTest::keyClick(&View(), Qt::Key_F12);
    QTest::keyClick(&View().Field, Qt::Key_Return);
    QTest::keyClick(&View().Field, Qt::Key_F4, Qt::AltModifier);
    QTest::keyClick(&View().Field, Qt::Key_A);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_F2, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&View(), &held);
    EXPECT_EQ(Form.Keys, (std::vector{EKey::F2, EKey::F12, EKey::Return}));
    EXPECT_EQ(Form.Edit.Text(), "a");
}

TEST_F(FormsTest, CloseInTheMiddleOfAWaitStands) {
    Form.Ok.OnClick = [this] {
        Later([this] { Form.Close(); });
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.elapsed() < 60) {
            Desk.Wait.ProcessMessages();
            Desk.Wait.Sleep(10);
        }
        Form.Edit.SetText("after");
    };
    Desk.Dialogs.Show(Form);
    View().Button.click();
    EXPECT_FALSE(Form.Visible());
    EXPECT_FALSE(View().isVisible());
    EXPECT_EQ(View().Field.text(), "after");
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
    EXPECT_EQ(resized, 1);
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
    Form.SetClientSize(100000, 200); // no wider than the screen
    EXPECT_LE(View().width(), View().screen()->availableSize().width());
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
    Application().OnException = nullptr;
    EXPECT_EQ(text, "from an event");
}

} // namespace tidewell::test

#include "widgets/ScopeView.h"

#include "Support.h"
#include "widgets/ChannelSettings.h"

namespace tidewell::test {

namespace {

constexpr TColor red{0x000000FF};
constexpr TColor green{0x0000A000};
constexpr TColor blue{0x00FF0000};

// Half of a pixel covered suffices.
bool IsNear(const QColor& color, TColor wanted) {
    return std::abs(color.red() - wanted.Red()) + std::abs(color.green() - wanted.Green()) +
               std::abs(color.blue() - wanted.Blue()) <
           250;
}

// A surface of 0 to 100 by 0 to 10, to 100 and to 1, and its view.
class ScopeViewTest : public testing::Test {
  protected:
    ScopeViewTest() {
        Scope.RefreshInterval = 1;
        Scope.XAxis.Max.SetBoth(100);
        for (const auto& [axis, most] : {std::pair(0, 10), {1, 100}, {2, 1}}) {
            Scope.Axis(axis)->Min.SetBoth(0);
            Scope.Axis(axis)->Max.SetBoth(most);
        }
    }

    TSLDisplayChannel& Add(const std::string& name, TColor color, int axis,
                           const std::vector<double>& values) {
        TSLDisplayChannel& channel = Scope.Channels.Add();
        channel.SetName(name);
        channel.SetColor(color);
        channel.SetYAxisIndex(axis);
        const double step = values.size() > 1 ? 100.0 / static_cast<double>(values.size() - 1) : 0;
        for (std::size_t i = 0; i < values.size(); ++i)
            channel.Data.AddXYPoint(static_cast<double>(i) * step, values[i]);
        return channel;
    }

    static void Replace(TSLDisplayChannel& channel, double value) {
        channel.Data.Clear();
        channel.Data.AddXYPoint(0, value);
        channel.Data.AddXYPoint(100, value);
    }

    void Show() {
        View.resize(800, 500);
        View.show();
        Draw();
    }
    void Draw() {
        ASSERT_TRUE(WaitFor([this] { return !Scope.Redraw.IsPending() && !Scope.Redraw.AreNamesPending(); }));
        QCoreApplication::processEvents();
    }

    QPoint At(double x, double y, std::size_t axis = 0) const {
        const TPlotMap map = View.Plot().Map();
        return QPointF(map.X.Pixel(x), map.Y.at(axis).Pixel(y)).toPoint();
    }
    // Whether that colour is painted within a pixel of the place.
    bool Painted(double x, double y, TColor color, std::size_t axis = 0) {
        const QImage image = View.grab(QRect(At(x, y, axis) - QPoint(1, 1), QSize(3, 3))).toImage();
        for (int i = 0; i < 9; ++i)
            if (IsNear(image.pixelColor(i % 3, i / 3), color))
                return true;
        return false;
    }
    // Once drawn: the values at which a curve of a color lies in the middle.
    std::string Lines(TColor color) {
        Draw();
        std::string values;
        for (int value = 1; value < 10; ++value)
            values += Painted(50, value, color) ? std::to_string(value) : "";
        return values;
    }

    void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {}) {
        test::Drag(View, from, to, modifiers);
        QCoreApplication::processEvents();
    }
    void Wheel(QPoint place, int notches, Qt::KeyboardModifiers modifiers = {}) {
        test::Wheel(View, place, notches, modifiers);
    }
    void Click(QPoint place) { QTest::mouseClick(&View, Qt::LeftButton, {}, place); }

    TRobot Robot;
    TSLScope Scope;
    TScopeView View{Scope};
};

} // namespace

TEST_F(ScopeViewTest, PaintsCurvesWhereTheirPointsLie) {
    constexpr double none = NAN;
    Add("left", red, 0, {2, 2, none, 8, 8});        // a gap from 25 to 75
    Add("right", green, 1, {90, 90});               // as high as 9 on the left
    Add("third", blue, 2, {0.5, 0.5});              // as high as 5
    Add("noise", red, 0, {6, 1e300, 6, -1e300, 6}); // upright at 50 and the edges
    Add("alone", green, 0, {none, 1, none, none, none});
    Add("hidden", red, 0, {4, 4}).SetVisible(false);
    Add("axis 9", red, 8, {4, 4});
    std::vector<double> many(100001, 3); // more than pixels show; peaks stay
    many[40000] = 9;
    many[60001] = 0.5;
    Add("long", blue, 0, many);
    Show();
    // By X, Y of the left scale, and colour. Green is drawn on the second scale, blue on the third.
    const std::vector<std::pair<QPointF, TColor>> painted{
        {{10, 2}, red},   {{90, 8}, red},   {{60, 9}, green}, {{30, 5}, blue},       {{50, 9.8}, red},
        {{50, 0.3}, red}, {{25, 1}, green}, {{40, 7}, blue},  {{60.001, 1.5}, blue}, {{80, 3}, blue}};
    for (const auto& [place, color] : painted)
        EXPECT_TRUE(Painted(place.x(), place.y(), color)) << place.x() << ' ' << place.y();
    for (const QPointF place : {QPointF(40, 2), {45, 8}, {60, 4}, {10, 8}, {25, 9.8}})
        EXPECT_FALSE(Painted(place.x(), place.y(), red)) << place.x() << ' ' << place.y();
    EXPECT_FALSE(Painted(52, 7, blue));

    // At 200 % a line covers three rows instead of one and a half.
    const QImage large = View.Snapshot(2);
    int rows = 0;
    for (int row = -8; row <= 8; ++row)
        rows += IsNear(large.pixelColor(2 * At(10, 2) + QPoint(0, row)), red) ? 1 : 0;
    EXPECT_TRUE(rows == 2 || rows == 3) << rows;
}

TEST_F(ScopeViewTest, DrawsAtMostOncePerIntervalAndOnlyWhatHasChanged) {
    TSLDisplayChannel& channel = Add("a", red, 0, {2, 2});
    Show();
    Scope.RefreshInterval = 50;
    const auto idle = [this] {
        QTest::qWait(70);
        return View.Frames();
    };
    const int before = idle();
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < 175) {
        Replace(channel, 7);
        QCoreApplication::processEvents();
    }
    EXPECT_GE(View.Frames() - before, 2);
    EXPECT_LE(View.Frames() - before, elapsed.elapsed() / 50 + 1);
    const int drawn = idle();
    EXPECT_EQ(Lines(red), "7");
    // A live value is drawn without the curves.
    const QRect entry = View.Plot().LegendEntryRect(0);
    const QImage legend = View.grab(entry).toImage();
    channel.ShowValue(88);
    Draw();
    EXPECT_NE(View.grab(entry).toImage(), legend);
    View.hide();
    Replace(channel, 2);
    EXPECT_EQ(idle(), drawn);
    View.show();
    EXPECT_TRUE(WaitFor([&] { return View.Frames() > drawn; }));
}

TEST_F(ScopeViewTest, HoldFreezesThePictureButTakesData) {
    TSLDisplayChannel& channel = Add("a", red, 0, {2, 2});
    Show();
    Scope.SetHold(true);
    Replace(channel, 7);
    Scope.XAxis.Max.SetBoth(1000);
    View.resize(820, 520);
    EXPECT_EQ(Lines(red), "2");
    // The user still moves about in it. X has gone on below; all of the held picture is no zoom.
    Wheel(At(50, 2), 1);
    Press("Up", &View);
    EXPECT_LT(Scope.YAxis.Shown().Upper, 10);
    EXPECT_FALSE(Scope.XAxis.Zoomed());
    Scope.ZoomOff();
    // Other curves show at once, and stand still in their turn.
    Scope.Channels.Clear();
    Scope.XAxis.Max.SetBoth(100);
    TSLDisplayChannel& other = Add("b", green, 0, {5, 5});
    EXPECT_EQ(Lines(red) + Lines(green), "5");
    Replace(other, 7);
    EXPECT_EQ(Lines(green), "5");
    Scope.SetHold(false);
    EXPECT_EQ(Lines(green), "7");
}

TEST_F(ScopeViewTest, MouseAndKeysChangeWhatTheAxesShow) {
    Add("a", red, 0, {2, 2});
    Add("b", green, 1, {2, 2});
    Show();
    const QPoint centre = At(50, 5);
    const QRect plot = View.Plot().PlotRect();
    // X, and Y of the left and of the right scale, in steps that a pixel does not matter to.
    const auto shown = [this] {
        QCoreApplication::processEvents();
        const TSLZoomRect rect = Scope.ShownRect();
        QStringList texts;
        for (const auto& [range, step] : {std::pair{rect.X, 1.0}, {rect.Y[0], 0.25}, {rect.Y[1], 2.5}})
            texts.append(QString("%1..%2")
                             .arg(std::round(range.Lower / step) * step)
                             .arg(std::round(range.Upper / step) * step));
        return texts.join(' ');
    };
    const auto twice = [this](QPoint at) { QTest::mouseDClick(&View, Qt::LeftButton, {}, at); };
    const QPoint left(plot.left() - 10, centre.y()), right(plot.right() + 10, centre.y()); // scales
    const std::vector<std::pair<std::function<void()>, const char*>> moves{
        {[&] { Wheel(centre, 1); }, "0..100 1..9 10..90"},
        {[&] { twice(centre); }, "0..100 0..10 0..100"},
        {[&] { Wheel(centre, 1, Qt::ControlModifier); }, "10..90 0..10 0..100"},
        {[&] { Wheel(centre, -9, Qt::ControlModifier); }, "0..100 0..10 0..100"}, // no further than all
        {[&] { Drag(At(20, 2), At(40, 6)); }, "0..100 2..6 20..60"},
        {[&] { Press("Home", &View); }, "0..100 0..10 0..100"},
        {[&] { Drag(At(20, 5), At(70, 5) + QPoint(0, 1)); }, "0..100 0..10 0..100"}, // too flat
        // pans, but not beyond the samples
        {[&] { Drag(At(20, 2), At(40, 4), Qt::ShiftModifier); }, "0..100 -2..8 -20..80"},
        {[&] { Press("Up", &View); }, "0..100 -1..9 -10..90"},
        {[&] { Press("Down", &View); }, "0..100 -2..8 -20..80"},
        {[&] { Press("Home -", &View); }, "0..100 -1.25..11.25 -12.5..112.5"},
        {[&] { twice(left); }, "0..100 0..10 -12.5..112.5"},
        {[&] { Wheel(right, 1); }, "0..100 0..10 0..100"}};
    for (const auto& [move, expected] : moves) {
        move();
        EXPECT_EQ(shown(), expected);
    }
    // Panning holds the display for as long as it lasts.
    bool held = false;
    Scope.OnContextPopup = [&](int, int) { held = Scope.Hold(); };
    QTest::mousePress(&View, Qt::MiddleButton, {}, centre);
    QTest::mouseMove(&View, centre + QPoint(30, 30));
    QTest::mouseRelease(&View, Qt::RightButton, {}, centre);
    QTest::mouseRelease(&View, Qt::MiddleButton, {}, centre);
    EXPECT_TRUE(held && !Scope.Hold());
}

TEST_F(ScopeViewTest, TellsWhatLiesUnderTheMouse) {
    Add("a", red, 0, {2, 2, 2});
    Add("flags:[0000]", green, 0, {7, 8, 7});
    Add("hidden", red, 0, {5, 5}).SetVisible(false);
    Show();
    QString told;
    const auto at = [](const char* what, std::size_t index, const TSLPoint& point) {
        return QString("%1 %2 at %3 %4; ").arg(what).arg(index).arg(point.X).arg(point.Y);
    };
    Scope.OnOverChannel = [&](std::size_t index, const TSLPoint& point) { told = at("over", index, point); };
    Scope.Channels.OnClick = [&](std::size_t index, bool& handled, const TSLPoint& point) {
        handled = true;
        told += at("click", index, point);
    };
    Scope.Legend.Channels.OnItemClick = [&](std::size_t index, bool& handled) {
        handled = true;
        told += at("legend", index, {});
    };
    Scope.OnContextPopup = [&](int x, int y) { told += QString("popup %1 %2").arg(x).arg(y); };
    Scope.OnCustomMouseHitLabel = [](std::string& text, double value) {
        text += " of " + std::to_string(std::lround(value));
    };
    QTest::mouseMove(&View, At(48, 7.97));
    EXPECT_EQ(QToolTip::text(), "flags: 8.00 of 8");
    EXPECT_EQ(View.Plot().Overlay.Highlighted, 1U);
    Click(At(52, 7.97));
    EXPECT_EQ(std::exchange(told, {}), "over 1 at 50 8; click 1 at 50 8; ");
    QTest::mouseMove(&View, At(50, 5));
    EXPECT_FALSE(View.Plot().Overlay.Highlighted.has_value());
    EXPECT_TRUE(View.Plot().LegendEntryRect(2).isEmpty());
    Click(View.Plot().LegendEntryRect(1).center());
    Click(At(50, 5)); // nothing there
    QTest::mouseClick(&View, Qt::RightButton, {}, {31, 41});
    EXPECT_EQ(told, "legend 1 at 0 0; popup 31 41");
}

TEST_F(ScopeViewTest, TheToolBarHasACursorAndWorksOnEachAxis) {
    Add("a", red, 0, {2, 2});
    Show();
    const auto button = [this](const char* name) -> QToolButton& { return Child<QToolButton>(View, name); };
    EXPECT_FALSE(button("XZoomIn").isVisible());
    Scope.ToolBar.SetVisible(true);
    Draw();
    EXPECT_FALSE(button("Y2ZoomIn").isVisible());             // nothing is drawn on that axis
    const auto expectX = [this](double lower, double upper) { // within a pixel
        EXPECT_NEAR(Scope.XAxis.Shown().Lower, lower, 0.3);
        EXPECT_NEAR(Scope.XAxis.Shown().Upper, upper, 0.3);
    };
    button("XZoomIn").click();
    expectX(25, 75);
    button("XZoomOut").click();
    button("XZoomOneDir").click();
    Drag(At(20, 5), At(60, 6));
    expectX(20, 60);
    EXPECT_FALSE(Scope.YAxis.Zoomed());
    button("Pan").click();
    Drag(At(40, 5), At(50, 5));
    expectX(10, 50);
    button("ZoomOff").click();
    expectX(0, 100);
    QCoreApplication::processEvents();

    std::vector<double> positions;
    Scope.Cursors.OnPositionChange = [&](std::size_t, const TSLPoint& position) {
        positions.push_back(position.X);
    };
    button("Cursor").click();
    Drag(At(50, 5), At(30.3, 5));
    Press("Right Shift+Left", &View);
    ASSERT_GE(positions.size(), 4U);
    EXPECT_EQ(positions.front(), 50);
    EXPECT_EQ(std::vector(positions.end() - 3, positions.end()), (std::vector<double>{30, 31, 21}));
    const QRect place(At(21, 7) - QPoint(3, 3), QSize(7, 7));
    const QImage with = View.grab(place).toImage();
    button("Cursor").click();
    EXPECT_NE(View.grab(place).toImage(), with);
}

TEST_F(ScopeViewTest, ChannelSettingsSetAxisAndVisibility) {
    const TSLDisplayChannel& channel = Add("a:[1.00]", red, 0, {2, 2});
    const TSLDisplayChannel& other = Add("b", green, 8, {4, 4});
    Show();
    Robot.On<TChannelSettings>("ChannelSettings", [](TChannelSettings& dialog) {
        EXPECT_EQ(dialog.findChild<QComboBox*>("Axis1")->currentText(), "-");
        dialog.findChild<QComboBox*>("Axis0")->setCurrentIndex(1);
        dialog.findChild<QCheckBox*>("Visible1")->click();
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    View.ShowChannelSettings();
    EXPECT_TRUE(channel.YAxisIndex() == 1 && !other.Visible());
    EXPECT_EQ(other.YAxisIndex(), 8);
    EXPECT_EQ(channel.Name(), "a:[1.00]");
    Draw();
    EXPECT_TRUE(Painted(50, 2, red, 1));
}

} // namespace tidewell::test

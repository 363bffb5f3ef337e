#include "widgets/ScopeToolBar.h"

#include "widgets/Child.h"
#include "widgets/Icons.h"
#include "widgets/ScopeGestures.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int iconSize = 16; // pixels, here and below
constexpr int groupGap = 10;
constexpr int edge = 4;

QString AxisName(std::size_t axis) {
    return axis == 0 ? QStringLiteral("X") : QStringLiteral("Y%1").arg(axis);
}

} // namespace

TScopeToolBar::TScopeToolBar(TSLScope& scope, TScopeGestures& gestures, QWidget* parent)
    : QFrame(parent), Scope(scope), Gestures(gestures) {
    setObjectName(QStringLiteral("ToolBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    QWidget& group = AddGroup();
    Pan = &AddButton(
        group, "Pan", QStringLiteral("Drag to pan"), "pan", [this] { Gestures.PanMode = Pan->isChecked(); });
    Cursor = &AddButton(group, "Cursor", QStringLiteral("Cursor: its values stand in the legend"), "cursor",
                        [this] { Gestures.ShowCursor(Cursor->isChecked()); });
    for (QToolButton* button : {Pan, Cursor})
        button->setCheckable(true);
    AddButton(
        group, "ZoomOff", QStringLiteral("Zoom off"), "zoom-off", [this] { Gestures.ZoomOff(); });
    AddButton(
        group, "ChannelSettings", QStringLiteral("Channel settings"), "channels",
        [this] { OnChannelSettings(); });
    AddButton(
        group, "Copy", QStringLiteral("Copy the picture"), "copy", [this] { OnCopy(); });
    AddButton(group, "Save", QStringLiteral("Save the picture"), "save", [this] { OnSave(); });
    for (std::size_t axis = 0; axis < scopeAxes; ++axis)
        AddAxis(axis);
    PaintIcons();
    hide();
}

QWidget& TScopeToolBar::AddGroup() {
    auto& group = NewChild<QWidget>(*this);
    auto& row = NewChild<QHBoxLayout>(group);
    row.setContentsMargins(0, 0, 0, 0);
    row.setSpacing(1);
    Groups.push_back(&group);
    return group;
}

QToolButton& TScopeToolBar::AddButton(QWidget& group, const char* name, const QString& hint, const char* icon,
                                      std::function<void()> action) {
    auto& button = NewChild<QToolButton>(group);
    button.setObjectName(QString::fromLatin1(name));
    button.setToolTip(hint);
    button.setAccessibleName(hint);
    button.setAutoRaise(true);
    button.setIconSize({iconSize, iconSize});
    button.setFocusPolicy(Qt::TabFocus);
    group.layout()->addWidget(&button);
    connect(&button, &QToolButton::clicked, this, [action = std::move(action)] { action(); });
    Buttons.push_back({&button, icon});
    return button;
}

void TScopeToolBar::AddAxis(std::size_t axis) {
    QWidget& group = AddGroup();
    const QString name = AxisName(axis);
    auto& label = NewChild<QLabel>(group);
    label.setText(name);
    group.layout()->addWidget(&label);
    TSLScopeAxis& scale = AxisOf(Scope, axis);
    const auto add = [&](const char* button, const QString& hint, const char* icon,
                         const TSLAxisToolBarButton& source, bool oneDir) {
        const QByteArray object = name.toLatin1() + button;
        QToolButton& view = AddButton(group, object.constData(), name + QStringLiteral(": ") + hint, icon,
                                      [this, &source] { Gestures.Click(source); });
        view.setCheckable(oneDir);
        AxisButtons.push_back({&view, axis, &source, oneDir});
    };
    const auto& buttons = scale.ToolBar.Buttons;
    add("ZoomIn", QStringLiteral("zoom in"), "zoom-in", buttons.ZoomIn, false);
    add("ZoomOut", QStringLiteral("zoom out"), "zoom-out", buttons.ZoomOut, false);
    add("ZoomOff", QStringLiteral("zoom off"), "zoom-off", buttons.ZoomOff, false);
    add("ZoomOneDir", QStringLiteral("the mouse zooms this axis alone"), axis == 0 ? "zoom-x" : "zoom-y",
        buttons.ZoomOneDir, true);
}

void TScopeToolBar::Follow(const TScopePicture& picture) {
    setVisible(Scope.ToolBar.Visible());
    if (!Scope.ToolBar.Visible())
        return;
    Pan->setChecked(Gestures.PanMode);
    Cursor->setChecked(Scope.Cursors[0].Visible());
    std::array<bool, scopeAxes> any{};
    for (const TAxisButton& button : AxisButtons) {
        button.View->setVisible(button.Button->Visible);
        any.at(button.Axis) = any.at(button.Axis) || button.Button->Visible;
        if (button.IsOneDir)
            button.View->setChecked(AxisOf(Scope, button.Axis).ZoomOneDir);
    }
    for (std::size_t axis = 0; axis < scopeAxes; ++axis) {
        const bool hasScale = axis <= 1 || picture.UsesAxis(static_cast<int>(axis) - 1);
        Groups[Groups.size() - scopeAxes + axis]->setVisible(any.at(axis) && hasScale);
    }
    Arrange();
}

// In rows, as many as the surface's width asks for.
void TScopeToolBar::Arrange() {
    const int room = std::max(parentWidget()->width() - 2 * Scope.ToolBar.Right, 1);
    int x = edge;
    int y = edge;
    int right = 0;
    int bottom = 0;
    for (QWidget* group : Groups) {
        if (group->isHidden())
            continue;
        const QSize size = group->sizeHint();
        if (x > edge && x + size.width() + edge > room) {
            x = edge;
            y = bottom;
        }
        group->setGeometry(QRect(QPoint(x, y), size));
        x += size.width() + groupGap;
        right = std::max(right, x - groupGap);
        bottom = std::max(bottom, y + size.height());
    }
    resize(right + edge, bottom + edge);
    move(parentWidget()->width() - Scope.ToolBar.Right - width(),
         std::max(parentWidget()->height() - Scope.ToolBar.Bottom - height(), 0));
}

void TScopeToolBar::PaintIcons() {
    const QColor color = palette().color(QPalette::Active, QPalette::ButtonText);
    for (const TButton& button : Buttons)
        button.View->setIcon(TintedIcon(QString::fromLatin1(button.Icon), color));
}

void TScopeToolBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange)
        PaintIcons();
    QFrame::changeEvent(event);
}

void TScopeToolBar::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void TScopeToolBar::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

} // namespace tidewell

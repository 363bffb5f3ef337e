#pragma once

#include "widgets/ScopeIcons.h"

#include <QFrame>

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

class QToolButton;

namespace tidewell {

class TScopeGestures;
class TScopePicture;
class TSLAxisToolBarButton;
class TSLScope;

// The buttons of a surface: what concerns the whole of it, then four for each axis that has a scale. It lies
// on the surface, as far from its right bottom corner as the surface says.
class TScopeToolBar : public QFrame {
  public:
    struct TActions {
        std::function<void()> ChannelSettings;
        std::function<void()> Copy;
        std::function<void()> Save;
    };

    // The parent is the widget of the surface.
    TScopeToolBar(TSLScope& scope, TScopeGestures& gestures, TActions actions, QWidget* parent);
    // Shows itself and its buttons as the surface has them.
    void Follow(const TScopePicture& picture);

  protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override; // stays here
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    struct TButton {
        QToolButton* View = nullptr; // a child
        EScopeIcon Icon = EScopeIcon::ZoomIn;
    };
    struct TAxisButton {
        QToolButton* View = nullptr;
        std::size_t Axis = 0;
        const TSLAxisToolBarButton* Button = nullptr;
        bool IsOneDir = false;
    };
    QToolButton& AddButton(QWidget& group, const char* name, const QString& hint, EScopeIcon icon,
                           std::function<void()> action);
    QWidget& AddGroup();
    void AddAxis(std::size_t axis);
    void Arrange();
    void PaintIcons();

    TSLScope& Scope;
    TScopeGestures& Gestures;
    TActions Actions;
    std::vector<QWidget*> Groups; // children; the axes are the last
    std::vector<TButton> Buttons;
    std::vector<TAxisButton> AxisButtons;
    QToolButton* Pan = nullptr;
    QToolButton* Cursor = nullptr;
};

} // namespace tidewell

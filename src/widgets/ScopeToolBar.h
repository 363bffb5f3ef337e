#pragma once

#include "core/controls/Control.h"

#include <QFrame>

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

class QToolButton;

namespace tidewell {

class TScopeGestures;
class TScopePicture;
struct TSLAxisToolBarButton;
class TSLScope;

// The buttons of a surface: what concerns the whole of it, then four for each axis that has a scale. It lies
// on the surface, as far from its right bottom corner as the surface says.
class TScopeToolBar : public QFrame {
  public:
    // The parent is the widget of the surface.
    TScopeToolBar(TSLScope& scope, TScopeGestures& gestures, QWidget* parent);
    // Shows itself and its buttons as the surface has them.
    void Follow(const TScopePicture& picture);

    TEvent<> OnChannelSettings;
    TEvent<> OnCopy;
    TEvent<> OnSave;

  protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override; // stays here
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    struct TButton {
        QToolButton* View = nullptr; // a child
        const char* Icon = nullptr;  // its name
    };
    struct TAxisButton {
        QToolButton* View = nullptr;
        std::size_t Axis = 0;
        const TSLAxisToolBarButton* Button = nullptr;
        bool IsOneDir = false;
    };
    QToolButton& AddButton(QWidget& group, const char* name, const QString& hint, const char* icon,
                           std::function<void()> action);
    QWidget& AddGroup();
    void AddAxis(std::size_t axis);
    void Arrange();
    void PaintIcons();

    TSLScope& Scope;
    TScopeGestures& Gestures;
    std::vector<QWidget*> Groups; // children; the axes are the last
    std::vector<TButton> Buttons;
    std::vector<TAxisButton> AxisButtons;
    QToolButton* Pan = nullptr;
    QToolButton* Cursor = nullptr;
};

} // namespace tidewell

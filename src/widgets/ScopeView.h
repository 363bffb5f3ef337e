#pragma once

#include "core/controls/Control.h"
#include "widgets/ScopeExport.h"
#include "widgets/ScopeGestures.h"
#include "widgets/ScopePicture.h"
#include "widgets/ScopePlot.h"
#include "widgets/ScopeToolBar.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <string>

namespace tidewell {

// Shows a plot surface. What the program changes in it is drawn at most once per RefreshInterval and only
// while the widget is visible; what the user does to the view shows at once, from the data last drawn.
//
// Keys: the arrows pan, or move a visible cursor by a sample (Shift: by ten); Plus and Minus zoom, with Ctrl
// along X; Home leaves the zoom; Ctrl+Up and Ctrl+Down point at a curve; Ctrl+C copies the picture.
class TScopeView : public QWidget {
  public:
    // The surface must outlive the view.
    explicit TScopeView(TSLScope& scope, QWidget* parent = nullptr);

    // Asks for a file and its type, and saves the bytes that the picture has in that type.
    TEvent<const std::function<std::string(EPictureType)>&> OnSavePicture;

    int Frames() const { return FrameCount; } // drawn of new data so far
    const TScopePlot& Plot() const { return ThePlot; }
    QImage Snapshot(double scale); // the picture at that many pixels per pixel at 100 %
    void CopyPicture();
    void SavePicture();
    void ShowChannelSettings();

    QSize sizeHint() const override { return {800, 500}; }
    QSize minimumSizeHint() const override { return {200, 120}; }

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Schedule();
    void Refresh();
    void ShowFocus(bool show);
    bool HandleArrow(const QKeyEvent& event);

    TSLScope& Scope;
    TScopePicture Picture;
    TScopePlot ThePlot;
    TScopeGestures Gestures;
    TScopeToolBar& ToolBar; // a child
    QTimer Timer;           // until the next frame is due
    QElapsedTimer SinceFrame;
    int FrameCount = 0;
    TConnection Changed;
};

} // namespace tidewell

#pragma once

#include <QFrame>

class QLabel;
class QVBoxLayout;

namespace tidewell {

// A panel with a caption line above what it holds.
class TCaptionPanel : public QFrame {
  public:
    explicit TCaptionPanel(QWidget* parent = nullptr);
    void SetCaption(const QString& caption);
    // The widget becomes a child and takes all the room below the caption.
    void SetContent(QWidget& content);

  private:
    QLabel& Title;
    QVBoxLayout& Column;
};

} // namespace tidewell

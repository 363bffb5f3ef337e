#pragma once

#include <QRect>
#include <QStatusBar>
#include <QString>

#include <cstddef>
#include <functional>
#include <vector>

class QLabel;

namespace tidewell {

// A status bar of panels of given widths, from left to right. A panel shows a text, or widgets that stand in
// it.
class TPanelBar : public QStatusBar {
  public:
    struct TPanelText {
        int Width = 0; // pixels
        QString Text;
        bool Centred = false;
    };
    // The widget's place from that of its panel, both in the bar's coordinates.
    using TPlace = std::function<QRect(const QRect& panel)>;

    explicit TPanelBar(QWidget* parent = nullptr);
    void SetPanels(const std::vector<TPanelText>& panels);
    // The widget becomes a child of the bar and follows the panel.
    void Place(std::size_t panel, QWidget& widget, TPlace place);
    // As far as the bar reaches.
    QRect PanelRect(std::size_t panel) const;
    // At 96 dpi; the font may need more.
    void SetBarHeight(int pixels);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    struct TPlaced {
        std::size_t Panel = 0;
        QWidget* Widget = nullptr; // a child of the bar
        TPlace Rule;
    };
    void Arrange();

    int BarHeight = 19;
    std::vector<int> Widths;
    std::vector<QLabel*> Labels; // children of the bar
    std::vector<TPlaced> Placed;
};

} // namespace tidewell

#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Child.h"
#include "widgets/Colors.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>

#include <algorithm>
#include <vector>

namespace tidewell {

namespace {

constexpr int margin = 8; // pixels beside a row's text; on the safe side
constexpr int rowAir = 4; // above and below it together
constexpr double enoughContrast = 4.5;
constexpr int lighter = 4; // percent of lightness, one step

// Where the background is dark, as far as it has to be to be read.
QColor Lightened(const QColor& color, const QColor& background) {
    if (background.lightness() >= 128)
        return color;
    const double ground = Luminance(background) + 0.05;
    QColor light = color;
    for (int step = 0; step <= 100 && (Luminance(light) + 0.05) / ground < enoughContrast; step += lighter)
        light = QColor::fromHsl(color.hslHue(), color.hslSaturation(),
                                std::min(255, color.lightness() + 255 * step / 100));
    return light;
}

class TColorListModel : public QAbstractListModel {
  public:
    TColorListModel(const QListView& view, QObject* parent) : QAbstractListModel(parent), View(view) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(Rows.size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid())
            return {};
        const auto& row = Rows[static_cast<std::size_t>(index.row())];
        switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return ToQt(row.Caption);
        case Qt::SizeHintRole:
            return Size;
        case Qt::ForegroundRole:
            return Lightened(ToQt(row.Color), View.palette().color(QPalette::Base));
        default:
            return {};
        }
    }
    void SetRows(std::vector<TColorList::TRow> rows) {
        beginResetModel();
        Rows = std::move(rows);
        const auto longest = std::max_element(Rows.begin(), Rows.end(), [](const auto& a, const auto& b) {
            return a.Caption.size() < b.Caption.size();
        });
        const QFontMetrics metrics = View.fontMetrics();
        const int width = longest == Rows.end() ? 0 : metrics.horizontalAdvance(ToQt(longest->Caption));
        Size = {width + 2 * margin, metrics.height() + rowAir};
        endResetModel();
    }

  private:
    const QListView& View;
    std::vector<TColorList::TRow> Rows;
    QSize Size; // of each row, wide enough for the longest
};

bool IsClick(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonRelease)
        return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return !key.isAutoRepeat() && (IsEnter(event) || key.key() == Qt::Key_Space);
}

} // namespace

void Bind(QListView& view, TColorList& list, IDialogs& dialogs) {
    view.setUniformItemSizes(true);
    view.setSelectionMode(QAbstractItemView::NoSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    BindControl(view, list);
    auto& model = NewChild<TColorListModel>(view, view);
    view.setModel(&model);
    for (QWidget* const clicked : {static_cast<QWidget*>(&view), view.viewport()})
        FilterEvents(
            *clicked,
            [&list, &dialogs](const QEvent& event) {
                const bool click = IsClick(event);
                if (click)
                    RunGuarded(
                        dialogs, [&list] { list.OnClick(); });
                return click;
            });
    KeepInStep(view, list, [&list, &model] {
        if (!list.Updating())
            model.SetRows(list.Rows());
    });
}

} // namespace tidewell

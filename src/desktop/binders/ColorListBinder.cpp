#include "desktop/QtText.h"
#include "desktop/binders/ListBinders.h"
#include "widgets/Child.h"

#include <QAbstractListModel>
#include <QEvent>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr int margin = 8; // pixels beside a row's text; on the safe side
constexpr int rowAir = 4; // above and below it together
constexpr double enoughContrast = 4.5;
constexpr int lighter = 4; // percent of lightness, one step

// How bright a colour looks, from 0 to 1.
double Luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor Readable(TColor told, const QColor& background) {
    const QColor color(told.Red(), told.Green(), told.Blue());
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
            return Readable(row.Color, View.palette().color(QPalette::Base));
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

class TColorListBinding : public QObject {
  public:
    TColorListBinding(QListView& view, TColorList& list, IDialogs& dialogs, QObject* parent)
        : QObject(parent), List(list), Dialogs(dialogs), Model(view, this) {
        view.setModel(&Model);
        view.installEventFilter(this);
        view.viewport()->installEventFilter(this);
    }

    void Sync() {
        if (!List.Updating())
            Model.SetRows(List.Rows());
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!IsClick(*event))
            return QObject::eventFilter(watched, event);
        RunGuarded(Dialogs, [this] { List.OnClick(); });
        return true;
    }

  private:
    static bool IsClick(const QEvent& event) {
        if (event.type() == QEvent::MouseButtonRelease)
            return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
        if (event.type() != QEvent::KeyPress)
            return false;
        const auto& key = static_cast<const QKeyEvent&>(event);
        return !key.isAutoRepeat() &&
               (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Space);
    }

    TColorList& List;
    IDialogs& Dialogs;
    TColorListModel Model;
};

} // namespace

void BindColorList(QListView& view, TColorList& list, IDialogs& dialogs) {
    view.setUniformItemSizes(true);
    view.setSelectionMode(QAbstractItemView::NoSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    BindControl(view, list);
    auto& binding = NewChild<TColorListBinding>(view, view, list, dialogs);
    KeepInStep(view, list, [&binding] { binding.Sync(); });
}

} // namespace tidewell

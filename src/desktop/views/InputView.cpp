#include "desktop/views/InputView.h"

#include "desktop/QtText.h"
#include "desktop/binders/EditBinder.h"
#include "desktop/binders/SimpleBinders.h"
#include "setpoints/Finputdialog.h"
#include "widgets/BitGridView.h"
#include "widgets/Child.h"
#include "widgets/RoomyButton.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int margin = 20;    // pixels, here and below
constexpr int titleAir = 130; // beside the title, for the frame's own
constexpr int longestTitle = 560;
constexpr double limitStrength = 0.72; // of the text of the limits, which cannot be edited

QColor Mixed(const QColor& over, const QColor& under, double strength) {
    const auto mix = [strength](float a, float b) {
        return static_cast<float>(a * strength + b * (1 - strength));
    };
    return QColor::fromRgbF(mix(over.redF(), under.redF()), mix(over.greenF(), under.greenF()),
                            mix(over.blueF(), under.blueF()));
}

void BindBitGrid(TBitGridView& view, TStringGrid& grid, IDialogs& dialogs) {
    BindControl(view, grid);
    KeepInStep(
        view, grid,
        [&view, &grid] {
            QStringList names;
            std::vector<bool> bits;
            for (std::size_t column = 0; column < grid.Cells.ColCount(); ++column) {
                names.append(ToQt(grid.Cells.Cell(column, 0)));
                bits.push_back(grid.Cells.Cell(column, 1) == "1");
            }
            view.SetNames(names);
            view.SetBits(std::move(bits));
        });
    view.OnClick = [&grid, &dialogs](const TCellClick& click) {
        RunGuarded(dialogs, [&] { grid.OnClick(click); });
    };
}

} // namespace

TInputView::TInputView(TInputDialog& form, const TViewContext& context)
    : TDialogView(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      Content(NewChild<QWidget>(*this)) {
    auto& outer = NewChild<QVBoxLayout>(*this);
    outer.setSizeConstraint(QLayout::SetFixedSize);
    outer.setContentsMargins(0, 0, 0, 0);
    outer.addWidget(&Content);
    auto& column = NewChild<QVBoxLayout>(Content);
    column.setContentsMargins(margin, margin, margin, margin - 4);
    column.setSpacing(14);

    auto& grid = NewLayout<QGridLayout>(column);
    grid.setHorizontalSpacing(12);
    grid.setVerticalSpacing(8);
    Limits.push_back(&AddField(grid, form.LabMin, form.EMin, context.Dialogs));
    Limits.push_back(&AddField(grid, form.LabMax, form.EMax, context.Dialogs));
    AddField(grid, form.LabValue, form.EValue, context.Dialogs);
    AddField(grid, form.LabId, form.EId, context.Dialogs);
    AddField(grid, form.LabAdress, form.EAdress, context.Dialogs);
    MakeLimitsReadable();

    const TBitGridView::TShape shape{form.binaryvaluegrid.ColWidths, TInputDialog::BitNameHeight,
                                     TInputDialog::BitHeight, TInputDialog::BitGridWidth,
                                     TInputDialog::BitNameAngle};
    auto& bits = NewChild<TBitGridView>(Content, shape, form.binaryvaluegrid.BoxRect);
    column.addWidget(&bits, 0, Qt::AlignHCenter);
    BindBitGrid(bits, form.binaryvaluegrid, context.Dialogs);

    auto& buttons = NewLayout<QHBoxLayout>(column);
    buttons.addStretch(1);
    for (TButton* button : {&form.ButSend, &form.ButCancel}) {
        auto& view = NewChild<TRoomyButton>(Content);
        buttons.addWidget(&view);
        BindButton(view, *button, context.Dialogs);
        view.setDefault(button == &form.ButSend);
    }
    BindForm(*this, form, context);
    KeepInStep(*this, form, [this, &form] { FitWidth(form); });
}

QLineEdit& TInputView::AddField(QGridLayout& grid, TLabel& label, TEdit& edit, IDialogs& dialogs) {
    const int row = grid.rowCount();
    auto& text = NewChild<QLabel>(Content);
    auto& field = NewChild<QLineEdit>(Content);
    text.setBuddy(&field);
    grid.addWidget(&text, row, 0);
    grid.addWidget(&field, row, 1);
    BindLabel(text, label);
    BindEdit(field, edit, dialogs);
    return field;
}

void TInputView::FitWidth(const TInputDialog& form) {
    QFont bold = font();
    bold.setBold(true);
    const int title = QFontMetrics(bold, this).horizontalAdvance(ToQt(form.Caption())) + titleAir;
    const int width = std::max(form.ClientWidth(), std::min(title, longestTitle));
    if (width == Content.minimumWidth())
        return;
    Content.setMinimumWidth(width);
    // At once, so that it comes up in its final size.
    Content.layout()->activate();
    layout()->activate();
}

void TInputView::MakeLimitsReadable() {
    for (QLineEdit* field : Limits) {
        QPalette palette = QApplication::palette(field);
        const QColor text = palette.color(QPalette::Active, QPalette::Text);
        const QColor base = palette.color(QPalette::Disabled, QPalette::Base);
        palette.setColor(QPalette::Disabled, QPalette::Text, Mixed(text, base, limitStrength));
        field->setPalette(palette);
    }
}

void TInputView::Centre() {
    if (const QScreen* const where = screen()) {
        const QRect room = where->availableGeometry();
        QRect frame = frameGeometry();
        frame.moveCenter(room.center());
        move(std::max(frame.left(), room.left()), std::max(frame.top(), room.top()));
    }
}

void TInputView::changeEvent(QEvent* event) {
    TDialogView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        MakeLimitsReadable();
}

// The form has seen the Enter key. What is left of it is the repetition of a key held down since before the
// dialog came up, which must not send anything.
void TInputView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        TDialogView::keyPressEvent(event);
}

void TInputView::resizeEvent(QResizeEvent* event) {
    TDialogView::resizeEvent(event);
    Centre();
}

void TInputView::showEvent(QShowEvent* event) {
    TDialogView::showEvent(event);
    Centre();
}

} // namespace tidewell

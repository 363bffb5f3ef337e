#include "desktop/QtText.h"
#include "desktop/binders/FormBinder.h"
#include "desktop/views/Builder.h"
#include "desktop/views/Views.h"
#include "setpoints/Finputdialog.h"
#include "widgets/BitViews.h"
#include "widgets/Colors.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int margin = 20;    // pixels, here and below
constexpr int titleAir = 130; // beside the title, for the frame's own
constexpr int longestTitle = 560;
constexpr double limitStrength = 0.72; // of the text of the limits, which cannot be edited

QLineEdit& AddField(TGrid& grid, TLabel& label, TEdit& edit) {
    const int row = grid.Layout.rowCount();
    QLabel& text = grid.Add(label, row, 0);
    QLineEdit& field = grid.Add(edit, row, 1);
    text.setBuddy(&field);
    return field;
}

void MakeReadable(QLineEdit& limit) {
    QPalette palette = QApplication::palette(&limit);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor base = palette.color(QPalette::Disabled, QPalette::Base);
    palette.setColor(QPalette::Disabled, QPalette::Text, Mixed(text, base, limitStrength));
    limit.setPalette(palette);
}

void AddBitGrid(TBox& column, TStringGrid& grid) {
    const TBitGridView::TShape shape{grid.ColWidths, TInputDialog::BitNameHeight, TInputDialog::BitHeight,
                                     TInputDialog::BitGridWidth, TInputDialog::BitNameAngle};
    auto& view = NewChild<TBitGridView>(column.Parent, shape, grid.BoxRect);
    column.Layout.addWidget(&view, 0, Qt::AlignHCenter);
    BindControl(view, grid);
    KeepInStep(
        view, grid,
        [&view, &grid] {
            QStringList names;
            std::vector<bool> bits;
            for (std::size_t i = 0; i < grid.Cells.ColCount(); ++i) {
                names.append(ToQt(grid.Cells.Cell(i, 0)));
                bits.push_back(grid.Cells.Cell(i, 1) == "1");
            }
            view.SetNames(names);
            view.SetBits(std::move(bits));
        });
    view.OnClick = [&grid, &dialogs = column.Dialogs](const TCellClick& click) {
        RunGuarded(dialogs, [&] { grid.OnClick(click); });
    };
}

void FitWidth(QWidget& content, const TInputDialog& form) {
    QWidget& view = *content.parentWidget();
    const int title =
        QFontMetrics(Bold(view.font()), &view).horizontalAdvance(ToQt(form.Caption())) + titleAir;
    const int width = std::max(form.ClientWidth(), std::min(title, longestTitle));
    if (width == content.minimumWidth())
        return;
    content.setMinimumWidth(width);
    // At once, so that it comes up in its final size.
    content.layout()->activate();
    view.layout()->activate();
}

} // namespace

std::unique_ptr<QWidget> ViewOf(TInputDialog& form, const TViewContext& context) {
    auto view = std::make_unique<TDialogView>(nullptr, plainDialog);
    TBox outer = TBox(TBox::Column, *view, context.Dialogs).Margins(0);
    outer.Layout.setSizeConstraint(QLayout::SetFixedSize);
    TBox column = outer.AddPanel(TBox::Column).Margins(margin, margin, margin, margin - 4).Spacing(14);
    TGrid grid = column.AddGrid();
    grid.Layout.setHorizontalSpacing(12);
    grid.Layout.setVerticalSpacing(8);
    QLineEdit& least = AddField(grid, form.LabMin, form.EMin);
    QLineEdit& most = AddField(grid, form.LabMax, form.EMax);
    AddField(grid, form.LabValue, form.EValue);
    AddField(grid, form.LabId, form.EId);
    AddField(grid, form.LabAdress, form.EAdress);
    for (QLineEdit* const limit : {&least, &most}) {
        MakeReadable(*limit);
        OnEvent(*view, QEvent::PaletteChange, [limit] { MakeReadable(*limit); });
    }
    AddBitGrid(column, form.binaryvaluegrid);
    TBox buttons = column.AddBox(TBox::Row);
    buttons.AddStretch();
    buttons.Add(form.ButSend).setDefault(true);
    buttons.Add(form.ButCancel);

    view->OnShown = [&dialog = *view] { dialog.Centre(); };
    OnEvent(*view, QEvent::Resize, [&dialog = *view] { dialog.Centre(); });
    // The form has seen the Enter key. What is left of it is the repetition of a key held down since before
    // the dialog came up, which must not send anything.
    view->OnKeyPress = [](const QKeyEvent& event, bool& handled) { handled = IsEnter(event); };
    Bind(*view, form, context);
    KeepInStep(*view, form, [&content = column.Parent, &form] { FitWidth(content, form); });
    return view;
}

} // namespace tidewell

#include "widgets/ChannelSettings.h"

#include "graph/ChannelPalette.h"
#include "graph/SLScope.h"
#include "widgets/Child.h"
#include "widgets/Colors.h"
#include "widgets/SimpleViews.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int axisCount = 3;
constexpr int swatchWidth = 32; // pixels, here and below
constexpr int swatchHeight = 14;
constexpr std::size_t valueCharacters = 30; // of a live value behind a name, at most

} // namespace

TChannelSettings::TChannelSettings(TSLScope& scope, QWidget* parent) : QDialog(parent), Scope(scope) {
    setObjectName(QStringLiteral("ChannelSettings"));
    setWindowTitle(QStringLiteral("Channel settings"));
    auto& column = NewChild<QVBoxLayout>(*this);
    auto& area = NewChild<QScrollArea>(*this);
    area.setWidgetResizable(true);
    area.setFrameShape(QFrame::NoFrame);
    column.addWidget(&area, 1);
    auto& rows = NewChild<QWidget>(area);
    auto& grid = NewChild<QGridLayout>(rows);
    grid.setColumnStretch(0, 1);
    grid.setHorizontalSpacing(12);
    int heading = 0;
    for (const char* text : {"Channel", "Colour", "Axis"}) {
        auto& label = NewChild<QLabel>(rows);
        label.setText(QString::fromLatin1(text));
        label.setFont(Bold(label.font()));
        grid.addWidget(&label, 0, heading++);
    }
    for (std::size_t channel = 0; channel < Scope.Channels.Count(); ++channel)
        AddRow(grid, channel);
    grid.setRowStretch(static_cast<int>(Rows.size()) + 1, 1);
    area.setWidget(&rows);

    auto& buttons = NewChild<QDialogButtonBox>(*this);
    buttons.setStandardButtons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(
        &buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(&buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });
    column.addWidget(&buttons);

    // As large as the rows, within the screen.
    const QSize whole = rows.sizeHint() + QSize(area.verticalScrollBar()->sizeHint().width(), 0);
    const QMargins margins = column.contentsMargins();
    resize(QSize(whole.width() + margins.left() + margins.right(),
                 whole.height() + buttons.sizeHint().height() + 3 * margins.bottom())
               .boundedTo(screen()->availableSize() * 8 / 10));
}

void TChannelSettings::AddRow(QGridLayout& grid, std::size_t channel) {
    const TSLDisplayChannel& source = Scope.Channels[channel];
    QWidget& parent = *grid.parentWidget();
    TRow row;
    row.Name = WithoutValue(source.Name(), valueCharacters);
    row.Color = source.Color();
    const QString name = QString::fromStdString(row.Name);

    row.Visible = &NewChild<QCheckBox>(parent);
    row.Visible->setText(QString(name).replace(u'&', QLatin1String("&&")));
    row.Visible->setChecked(source.Visible());
    row.Visible->setObjectName(QStringLiteral("Visible%1").arg(channel));

    row.ColorButton = &NewChild<QPushButton>(parent);
    row.ColorButton->setIconSize({swatchWidth, swatchHeight});
    row.ColorButton->setAutoDefault(false);
    row.ColorButton->setAccessibleName(name + QStringLiteral(": colour"));
    row.ColorButton->setObjectName(QStringLiteral("Color%1").arg(channel));
    connect(row.ColorButton, &QPushButton::clicked, this, [this, channel] { ChooseColor(channel); });

    row.Axis = &NewChild<QComboBox>(parent);
    for (int axis = 1; axis <= axisCount; ++axis)
        row.Axis->addItem(QString::number(axis), axis - 1);
    if (row.Axis->findData(source.YAxisIndex()) < 0)
        row.Axis->addItem(QStringLiteral("-"), source.YAxisIndex()); // it has none, and keeps its number
    row.Axis->setCurrentIndex(row.Axis->findData(source.YAxisIndex()));
    row.Axis->setAccessibleName(name + QStringLiteral(": axis"));
    row.Axis->setObjectName(QStringLiteral("Axis%1").arg(channel));

    Rows.push_back(row);
    ShowColor(channel);
    const int line = static_cast<int>(channel) + 1;
    grid.addWidget(row.Visible, line, 0);
    grid.addWidget(row.ColorButton, line, 1);
    grid.addWidget(row.Axis, line, 2);
}

void TChannelSettings::ShowColor(std::size_t channel) {
    QPixmap swatch(QSize(swatchWidth, swatchHeight) * 2);
    swatch.setDevicePixelRatio(2);
    swatch.fill(ToQt(Rows[channel].Color));
    Rows[channel].ColorButton->setIcon(swatch);
}

void TChannelSettings::ChooseColor(std::size_t channel) {
    QColorDialog dialog(ToQt(Rows[channel].Color), this);
    dialog.setObjectName(QStringLiteral("ColorDialog"));
    dialog.setWindowTitle(QString::fromStdString(Rows[channel].Name));
    for (std::size_t i = 0; i < ChannelPalette.size(); ++i)
        QColorDialog::setCustomColor(static_cast<int>(i), ToQt(ChannelPalette[i]));
    if (dialog.exec() != QDialog::Accepted)
        return;
    Rows[channel].Color = FromQt(dialog.selectedColor());
    ShowColor(channel);
}

bool TChannelSettings::HasSameChannels() const {
    if (Scope.Channels.Count() != Rows.size())
        return false;
    for (std::size_t channel = 0; channel < Rows.size(); ++channel)
        if (WithoutValue(Scope.Channels[channel].Name(), valueCharacters) != Rows[channel].Name)
            return false;
    return true;
}

void TChannelSettings::accept() {
    if (HasSameChannels()) {
        for (std::size_t channel = 0; channel < Rows.size(); ++channel) {
            TSLDisplayChannel& target = Scope.Channels[channel];
            target.SetVisible(Rows[channel].Visible->isChecked());
            target.SetColor(Rows[channel].Color);
            target.SetYAxisIndex(Rows[channel].Axis->currentData().toInt());
        }
    }
    QDialog::accept();
}

} // namespace tidewell

#include "desktop/binders/SimpleBinders.h"

#include "desktop/QtText.h"
#include "widgets/CaptionPanel.h"
#include "widgets/LedView.h"
#include "widgets/PictureView.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace tidewell {

namespace {

QColor ToQt(TColor color) {
    return {color.Red(), color.Green(), color.Blue()};
}

// The button's palette with that background, and the text that is read best on it.
QPalette Coloured(const QColor& background) {
    QPalette palette = QApplication::palette("QPushButton");
    const double luminance =
        0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
    QColor ink = luminance > 0.5 ? Qt::black : Qt::white;
    palette.setColor(QPalette::Button, background);
    palette.setColor(QPalette::ButtonText, ink);
    ink.setAlphaF(0.4F);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, ink);
    return palette;
}

} // namespace

void BindLabel(QLabel& view, TLabel& label) {
    view.setTextFormat(Qt::PlainText);
    BindControl(view, label);
    KeepInStep(view, label, [&] {
        const QString caption = ToQt(label.Caption());
        if (view.text() != caption)
            view.setText(caption);
    });
}

void BindPanel(QWidget& view, TPanel& panel) {
    BindControl(view, panel);
}

void BindPanel(TCaptionPanel& view, TPanel& panel) {
    BindControl(view, panel);
    KeepInStep(view, panel, [&] { view.SetCaption(ToQt(panel.Caption())); });
}

void BindImage(TPictureView& view, TImage& image) {
    BindControl(view, image);
    KeepInStep(view, image, [&, shown = std::string()]() mutable {
        if (shown == image.Bytes())
            return;
        shown = image.Bytes();
        view.SetPicture(QPixmap::fromImage(QImage::fromData(QByteArray::fromStdString(shown))));
    });
}

void BindButton(QPushButton& view, TButton& button, IDialogs& dialogs) {
    BindControl(view, button);
    view.setAutoDefault(false);
    KeepInStep(
        view, button,
        [&view, &button, shown = std::optional<TColor>()]() mutable {
            const QString caption = ToQt(button.Caption());
            if (view.text() != caption)
                view.setText(caption);
            if (shown == button.Color())
                return;
            shown = button.Color();
            view.setPalette(shown ? Coloured(ToQt(*shown)) : QPalette());
        });
    QObject::connect(&view, &QPushButton::clicked, &view,
                     [&button, &dialogs] { RunGuarded(dialogs, [&button] { button.Click(); }); });
}

void BindCheckBox(QCheckBox& view, TCheckBox& checkBox, IDialogs& dialogs) {
    BindControl(view, checkBox);
    KeepInStep(
        view, checkBox,
        [&] {
            view.setText(ToQt(checkBox.Caption()));
            view.setChecked(checkBox.Checked());
        });
    QObject::connect(&view, &QCheckBox::clicked, &view, [&checkBox, &dialogs](bool checked) {
        RunGuarded(dialogs, [&checkBox, checked] {
            checkBox.SetChecked(checked);
            checkBox.OnClick();
        });
    });
}

void BindProgressBar(QProgressBar& view, TProgressBar& bar) {
    BindControl(view, bar);
    KeepInStep(view, bar, [&] {
        // A maximum of 0 would show a bar that runs for ever.
        view.setRange(0, bar.Max() > 0 ? bar.Max() : 1);
        view.setValue(bar.Max() > 0 ? bar.Position() : 0);
    });
}

void BindLed(TLedView& view, TALed& led) {
    BindControl(view, led);
    view.setAccessibleName(ToQt(led.Name()));
    KeepInStep(view, led, [&] {
        view.SetColor(ToQt(led.TrueColor()));
        view.SetOn(led.Value());
    });
}

} // namespace tidewell

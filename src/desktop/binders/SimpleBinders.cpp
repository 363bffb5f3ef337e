#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"
#include "widgets/Colors.h"
#include "widgets/PanelBar.h"
#include "widgets/SimpleViews.h"
#include "widgets/TwoThumbTrackBar.h"

#include <QApplication>
#include <QCheckBox>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTabWidget>

#include <algorithm>

namespace tidewell {

namespace {

// The button's palette with that background, and the text that is read best on it.
QPalette Coloured(const QColor& background) {
    QPalette palette = QApplication::palette("QPushButton");
    const double brightness =
        0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
    const QColor ink = brightness > 0.5 ? Qt::black : Qt::white;
    palette.setColor(QPalette::Button, background);
    palette.setColor(QPalette::ButtonText, ink);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Faded(ink, 0.4F));
    return palette;
}

} // namespace

void Bind(QLabel& view, TLabel& label, IDialogs&) {
    view.setTextFormat(Qt::PlainText);
    BindControl(view, label);
    KeepInStep(view, label, [&] {
        const QString caption = ToQt(label.Caption());
        if (view.text() != caption)
            view.setText(caption);
    });
}

void Bind(QWidget& view, TPanel& panel, IDialogs&) {
    BindControl(view, panel);
}

void Bind(TCaptionPanel& view, TPanel& panel, IDialogs&) {
    BindControl(view, panel);
    KeepInStep(view, panel, [&] { view.SetCaption(ToQt(panel.Caption())); });
}

void Bind(TPictureView& view, TImage& image, IDialogs&) {
    BindControl(view, image);
    KeepInStep(view, image, [&, shown = std::string()]() mutable {
        if (shown == image.Bytes())
            return;
        shown = image.Bytes();
        view.SetPicture(QPixmap::fromImage(QImage::fromData(QByteArray::fromStdString(shown))));
    });
}

void Bind(QPushButton& view, TButton& button, IDialogs& dialogs) {
    BindControl(view, button);
    view.setAutoDefault(false);
    KeepInStep(
        view, button,
        [&, shown = std::optional<TColor>()]() mutable {
            const QString caption = ToQt(button.Caption());
            if (view.text() != caption)
                view.setText(caption);
            if (shown == button.Color())
                return;
            shown = button.Color();
            view.setPalette(shown ? Coloured(ToQt(*shown)) : QPalette());
        });
    OnSignal(view, &QPushButton::clicked, dialogs, [&button] { button.Click(); });
}

void Bind(QCheckBox& view, TCheckBox& checkBox, IDialogs& dialogs) {
    BindControl(view, checkBox);
    KeepInStep(view, checkBox, [&] {
        view.setText(ToQt(checkBox.Caption()));
        view.setChecked(checkBox.Checked());
    });
    OnSignal(view, &QCheckBox::clicked, dialogs, [&checkBox](bool checked) {
        checkBox.SetChecked(checked);
        checkBox.OnClick();
    });
}

void Bind(QProgressBar& view, TProgressBar& bar, IDialogs&) {
    BindControl(view, bar);
    KeepInStep(view, bar, [&] {
        // A maximum of 0 would show a bar that runs for ever.
        view.setRange(0, bar.Max() > 0 ? bar.Max() : 1);
        view.setValue(bar.Max() > 0 ? bar.Position() : 0);
    });
}

void Bind(TLedView& view, TALed& led, IDialogs&) {
    BindControl(view, led);
    view.setAccessibleName(ToQt(led.Name()));
    KeepInStep(view, led, [&] { view.Show(led.Value(), ToQt(led.TrueColor())); });
}

void Bind(TPanelBar& view, TStatusBar& bar, IDialogs&) {
    BindControl(view, bar);
    KeepInStep(view, bar, [&] {
        std::vector<TPanelBar::TPanelText> panels;
        for (const auto& panel : bar.Panels())
            panels.push_back({panel.Width, ToQt(panel.Text), panel.Centred});
        view.SetPanels(panels);
    });
}

void Bind(QTabWidget& view, TPageControl& pages, IDialogs& dialogs) {
    BindControl(view, pages);
    const auto showActive = [&] {
        if (view.currentIndex() != pages.ActivePageIndex())
            view.setCurrentIndex(pages.ActivePageIndex());
    };
    for (std::size_t i = 0; i < pages.Pages.size(); ++i) {
        TTabSheet& page = pages.Pages[i];
        const int index = static_cast<int>(i);
        if (QWidget* widget = view.widget(index))
            widget->setObjectName(ToQt(page.Name()));
        KeepInStep(view, page, [&view, &page, index, showActive] {
            view.setTabText(index, ToQt(page.Caption()));
            view.setTabEnabled(index, page.Enabled());
            view.setTabVisible(index, page.Visible());
            showActive();
        });
    }
    KeepInStep(view, pages, showActive);
    OnSignal(view, &QTabWidget::currentChanged, dialogs, [&pages](int index) {
        if (index >= 0)
            pages.SetActivePageIndex(index);
    });
}

void Bind(QScrollBar& view, TScrollBar& bar, IDialogs& dialogs) {
    BindControl(view, bar);
    view.setSingleStep(1);
    KeepInStep(
        view, bar,
        [&] {
            const QSignalBlocker quiet(view);
            view.setRange(0, bar.Max());
            view.setPageStep(std::max(bar.PageSize(), 1));
            view.setValue(bar.Position());
        });
    OnSignal(
        view, &QScrollBar::valueChanged, dialogs,
        [&] { bar.Scroll(view.isSliderDown() ? EScrollCode::Track : EScrollCode::End, view.value()); });
    OnSignal(view, &QScrollBar::sliderReleased, dialogs, [&] { bar.Scroll(EScrollCode::End, view.value()); });
}

void Bind(TTwoThumbTrackBar& view, TTrackBar2& bar, IDialogs& dialogs) {
    BindControl(view, bar);
    KeepInStep(
        view, bar,
        [&] {
            view.SetRange(bar.Min(), bar.Max());
            view.SetPositions(bar.LowerPosition(), bar.UpperPosition());
            view.SetTickFrequency(bar.Frequency());
            view.SetPageSize(bar.PageSize());
            view.SetThumbColor(ToQt(bar.ThumbColor()));
        });
    view.OnLowerMoved = [&bar, &dialogs](int position) {
        RunGuarded(
            dialogs, [&] { bar.SetLowerPosition(position); });
    };
    view.OnUpperMoved = [&bar, &dialogs](int position) {
        RunGuarded(dialogs, [&] { bar.SetUpperPosition(position); });
    };
}

} // namespace tidewell

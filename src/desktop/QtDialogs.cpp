#include "desktop/QtDialogs.h"

#include "core/AtExit.h"
#include "core/Errors.h"
#include "core/Guard.h"
#include "core/controls/Form.h"
#include "desktop/QtText.h"
#include "desktop/binders/Bind.h"

#include <QCursor>
#include <QEventLoop>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <iostream>
#include <utility>

namespace tidewell {

namespace {

struct TButtonsLook {
    QMessageBox::StandardButtons Shown;
    QMessageBox::StandardButton Escape;
    EModalResult Escaped; // what the frame or Esc answers
};

TButtonsLook LookOf(EButtons buttons) {
    switch (buttons) {
    case EButtons::YesNo:
        return {QMessageBox::Yes | QMessageBox::No, QMessageBox::No, EModalResult::No};
    case EButtons::OkCancel:
        return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel, EModalResult::Cancel};
    case EButtons::Ok:
        break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok, EModalResult::Ok};
}

struct TKindLook {
    QMessageBox::Icon Icon;
    const char* Title; // nullptr: the program's name
};

TKindLook LookOf(EMessageKind kind) {
    switch (kind) {
    case EMessageKind::Information:
        return {QMessageBox::Information, "Information"};
    case EMessageKind::Warning:
        return {QMessageBox::Warning, "Warning"};
    case EMessageKind::Error:
        return {QMessageBox::Critical, "Error"};
    case EMessageKind::Confirmation:
        return {QMessageBox::Question, "Confirm"};
    case EMessageKind::Plain:
        break;
    }
    return {QMessageBox::NoIcon, nullptr};
}

// Line breaks of any kind as Qt shows them.
QString Lines(const std::string& text) {
    return ToQt(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
}

// Until the end of the block that keeps the result, whoever waits can see the mouse again: something asks for
// it.
[[nodiscard]] auto OrdinaryCursor() {
    const bool waiting = QApplication::overrideCursor() != nullptr;
    if (waiting)
        QApplication::restoreOverrideCursor();
    return TAtExit([waiting] {
        if (waiting)
            QApplication::setOverrideCursor(Qt::WaitCursor);
    });
}

QString FilterText(const TFileFilter& filter) {
    const QString masks = ToQt(filter.Mask).replace(u';', u' ');
    const QString caption = ToQt(filter.Caption);
    // A caption that already ends in its masks would show them twice.
    const qsizetype bracket = caption.lastIndexOf(u'(');
    const bool told = bracket >= 0 && caption.endsWith(u')');
    return (told ? caption.left(bracket).trimmed() : caption) + QStringLiteral(" (%1)").arg(masks);
}

} // namespace

TQtDialogs::TQtDialogs(TQtApplication& application) : Application(application) {
    QObject::connect(
        &application, &QGuiApplication::focusWindowChanged, &Guard,
        [this](QWindow* window) {
            if (window != nullptr)
                Brought = nullptr;
        });
}

TQtDialogs::~TQtDialogs() {
    DestroyViews();
}

void TQtDialogs::DestroyViews() {
    while (!Made.empty()) {
        Views[Made.back()].View.reset();
        Made.pop_back();
    }
}

void TQtDialogs::RegisterView(const TForm& form, TMakeView make) {
    Views[&form].Make = std::move(make);
}

void TQtDialogs::RegisterPopup(const TPopupMenu& popup, std::function<void(QMenu&)> fill) {
    Popups[&popup] = std::move(fill);
}

QWidget* TQtDialogs::FindView(const TForm& form) const {
    const auto found = Views.find(&form);
    return found == Views.end() ? nullptr : found->second.View.get();
}

QWidget& TQtDialogs::ViewOf(const TForm& form) {
    const auto found = Views.find(&form);
    if (found == Views.end())
        throw TError("The form " + form.Name() + " has no window");
    TEntry& entry = found->second;
    if (!entry.View) {
        entry.View = entry.Make();
        Made.push_back(&form);
    }
    return *entry.View;
}

QWidget* TQtDialogs::TopWindow() const {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    if (Brought != nullptr && Brought->isVisible())
        return Brought;
    if (QWidget* active = QApplication::activeWindow())
        return active;
    for (auto form = Made.rbegin(); form != Made.rend(); ++form)
        if (QWidget* view = FindView(**form); view != nullptr && view->isVisible())
            return view;
    return nullptr;
}

void TQtDialogs::CancelAll() {
    Cancelling = true;
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<QDialog*>(window); dialog != nullptr && dialog->isVisible())
            dialog->reject();
}

EModalResult TQtDialogs::ShowMessageBox(EMessageKind kind, const std::string& text, EButtons buttons) {
    const TButtonsLook offered = LookOf(buttons);
    if (Cancelling) {
        std::cerr << text << '\n';
        return offered.Escaped;
    }
    const auto held = Application.HoldEnding();
    const auto ordinary = OrdinaryCursor();
    const TKindLook look = LookOf(kind);
    QMessageBox box(TopWindow());
    box.setObjectName(QStringLiteral("MessageBox"));
    box.setIcon(look.Icon);
    box.setWindowTitle(look.Title != nullptr ? QString::fromLatin1(look.Title)
                                             : QApplication::applicationName());
    box.setTextFormat(Qt::PlainText);
    box.setText(Lines(text));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setStandardButtons(offered.Shown);
    box.setEscapeButton(offered.Escape);
    box.exec();
    QAbstractButton* const clicked = box.clickedButton();
    switch (clicked != nullptr ? box.standardButton(clicked) : QMessageBox::NoButton) {
    case QMessageBox::Ok:
        return EModalResult::Ok;
    case QMessageBox::Yes:
        return EModalResult::Yes;
    default:
        return offered.Escaped;
    }
}

std::optional<std::string> TQtDialogs::InputBox(const std::string& title, const std::string& prompt,
                                                const std::string& text) {
    if (Cancelling)
        return std::nullopt;
    const auto ordinary = OrdinaryCursor();
    QInputDialog box(TopWindow());
    box.setObjectName(QStringLiteral("InputBox"));
    box.setWindowTitle(ToQt(title));
    box.setLabelText(Lines(prompt));
    box.setTextValue(ToQt(text));
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return FromQt(box.textValue());
}

std::optional<std::filesystem::path> TQtDialogs::OpenFile(const TFileDialog& dialog) {
    const auto chosen = RunFileDialog(dialog, EFileMode::Open);
    return chosen.empty() ? std::nullopt : std::optional(chosen.front());
}

std::vector<std::filesystem::path> TQtDialogs::OpenFiles(const TFileDialog& dialog) {
    return RunFileDialog(dialog, EFileMode::OpenMany);
}

std::optional<std::filesystem::path> TQtDialogs::SaveFile(const TFileDialog& dialog, std::size_t& filter) {
    const auto chosen = RunFileDialog(dialog, EFileMode::Save, filter);
    return chosen.empty() ? std::nullopt : std::optional(chosen.front());
}

std::vector<std::filesystem::path> TQtDialogs::RunFileDialog(const TFileDialog& dialog, EFileMode mode) {
    std::size_t filter = 0;
    return RunFileDialog(dialog, mode, filter);
}

std::vector<std::filesystem::path> TQtDialogs::RunFileDialog(const TFileDialog& dialog, EFileMode mode,
                                                             std::size_t& filter) {
    if (Cancelling)
        return {};
    const auto ordinary = OrdinaryCursor();
    const bool save = mode == EFileMode::Save;
    QFileDialog box(TopWindow(), ToQt(dialog.Title), PathToQt(dialog.InitialDirectory));
    box.setObjectName(save ? QStringLiteral("SaveDialog") : QStringLiteral("OpenDialog"));
    box.setOption(QFileDialog::DontConfirmOverwrite, !dialog.AskOverwrite);
    box.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    if (mode == EFileMode::OpenMany)
        box.setFileMode(QFileDialog::ExistingFiles);
    else
        box.setFileMode(!save && dialog.FileMustExist ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    QStringList filters;
    for (const auto& offered : dialog.Filters)
        filters.append(FilterText(offered));
    if (!filters.isEmpty()) {
        box.setNameFilters(filters);
        box.selectNameFilter(
            filters.value(static_cast<qsizetype>(dialog.SelectedFilter), filters.constFirst()));
    }
    box.setMaximumSize(box.screen()->availableSize() -
                       QSize(0, box.style()->pixelMetric(QStyle::PM_TitleBarHeight)));
    std::vector<std::filesystem::path> chosen;
    if (box.exec() == QDialog::Accepted)
        for (const QString& file : box.selectedFiles())
            chosen.push_back(PathFromQt(file));
    filter = static_cast<std::size_t>(std::max<qsizetype>(filters.indexOf(box.selectedNameFilter()), 0));
    return chosen;
}

EModalResult TQtDialogs::ShowModal(TForm& form) {
    if (Cancelling)
        return EModalResult::Cancel;
    if (form.Visible())
        form.Hide(); // a window becomes modal only while it is hidden
    const auto ordinary = OrdinaryCursor();
    QWidget* const below = TopWindow();
    QWidget& view = ViewOf(form);
    view.setWindowModality(Qt::ApplicationModal);
    view.winId(); // makes the window, which can then belong to the one below
    view.windowHandle()->setTransientParent(below != nullptr ? below->windowHandle() : nullptr);
    RunGuarded(*this, [&form] { form.Open(); });
    RunModal(form);
    return form.ModalResult() == EModalResult::None ? EModalResult::Cancel : form.ModalResult();
}

void TQtDialogs::RunModal(TForm& form) {
    const auto ended = [this, &form] {
        return !form.Visible() || form.ModalResult() != EModalResult::None || Cancelling ||
               Application.Ending();
    };
    while (form.Visible()) {
        QEventLoop loop;
        const TConnection watch = form.Changed.Connect([&] {
            if (ended())
                loop.quit();
        });
        if (!ended())
            loop.exec();
        if (!form.Visible())
            return;
        RunGuarded(*this, [&form] { form.Close(); });
        if (!form.Visible())
            return;
        // It refused to close, or failed to.
        if (Cancelling || Application.Ending())
            form.Hide();
        else
            form.SetModalResult(EModalResult::None);
    }
}

void TQtDialogs::Show(TForm& form) {
    QWidget& view = ViewOf(form);
    // The platform tells later that the window has the keyboard; what is opened until then belongs on it.
    Brought = view.isActiveWindow() ? nullptr : &view;
    if (form.Visible()) {
        view.raise();
        view.activateWindow();
        return;
    }
    view.setWindowModality(Qt::NonModal);
    form.Open();
}

void TQtDialogs::Popup(TPopupMenu& menu) {
    if (Cancelling)
        return;
    QMenu view;
    if (const auto own = Popups.find(&menu); own != Popups.end())
        own->second(view);
    else
        Bind(view, menu, *this);
    view.exec(QCursor::pos());
}

bool TQtDialogs::IsModalOpen() const {
    return QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr;
}

void TQtDialogs::SetWaitCursor(bool wait) {
    Waits = std::max(0, wait ? Waits + 1 : Waits - 1);
    if (wait && Waits == 1) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        // What was just hidden or set would else be seen only after the wait.
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible())
                window->repaint();
    } else if (!wait && Waits == 0) {
        QApplication::restoreOverrideCursor();
    }
}

int TQtDialogs::WorkAreaHeight() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry().height() : 0;
}

} // namespace tidewell

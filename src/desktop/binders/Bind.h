#pragma once

#include "core/Guard.h"
#include "core/controls/Lists.h"
#include "core/controls/MaskEdit.h"
#include "core/controls/Menu.h"
#include "core/controls/Pages.h"
#include "core/controls/ScrollBar.h"
#include "core/controls/Simple.h"
#include "core/controls/StatusBar.h"
#include "core/controls/StringGrid.h"
#include "core/controls/TrackBar2.h"
#include "core/controls/TreeView.h"
#include "core/ports/IDialogs.h"

#include <QObject>

#include <type_traits>
#include <utility>

class QCheckBox;
class QComboBox;
class QEvent;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListView;
class QListWidget;
class QMenu;
class QMenuBar;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QScrollBar;
class QTabWidget;
class QTableView;
class QTreeWidget;
class QWidget;

namespace tidewell {

class TCaptionPanel;
class TLedView;
class TPanelBar;
class TPictureView;
class TTwoThumbTrackBar;

// A binder shows a control in a widget: at once, then at each change, for as long as the widget lives. What
// the user does goes to the control's events, guarded by the general handler, which shows its messages by the
// dialogs given. Control and dialogs must outlive the widget, which has its parent already.

void Bind(QCheckBox& view, TCheckBox& checkBox, IDialogs& dialogs);
void Bind(QComboBox& view, TComboBox& box, IDialogs& dialogs);
void Bind(QLabel& view, TLabel& label, IDialogs& dialogs);
void Bind(QListWidget& view, TListBox& list, IDialogs& dialogs);
void Bind(QPlainTextEdit& view, TMemo& memo, IDialogs& dialogs);
void Bind(QProgressBar& view, TProgressBar& bar, IDialogs& dialogs);
void Bind(QPushButton& view, TButton& button, IDialogs& dialogs);
void Bind(QWidget& view, TPanel& panel, IDialogs& dialogs);
void Bind(TCaptionPanel& view, TPanel& panel, IDialogs& dialogs);
void Bind(TLedView& view, TALed& led, IDialogs& dialogs);
void Bind(TPanelBar& view, TStatusBar& bar, IDialogs& dialogs);
void Bind(TTwoThumbTrackBar& view, TTrackBar2& bar, IDialogs& dialogs);
// Bytes that are no picture show nothing.
void Bind(TPictureView& view, TImage& image, IDialogs& dialogs);
// The Enter key goes to OnReturn if the form has set it, and no further.
void Bind(QLineEdit& view, TEdit& edit, IDialogs& dialogs);
// A click by the left mouse button is the control's click; losing the keyboard to another widget is its exit.
void Bind(QLineEdit& view, TMaskEdit& edit, IDialogs& dialogs);
// Fills the group with one radio button per item, one below the other.
void Bind(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs);
// A click anywhere, Enter and Space count as a click on the list. On a dark background the rows' colours are
// lightened as far as they need to be read.
void Bind(QListView& view, TColorList& list, IDialogs& dialogs);
// The right mouse button leaves the selection as it is. The menu key counts as that button.
void Bind(QTreeWidget& view, TTreeView& tree, IDialogs& dialogs);
// Row 0 of the grid is shown as the heading, with the text of OnDrawCell where its cells are empty; row 1 as
// the first row of the view. Cells are read while painting, so Repaint shows what has changed in them. Clicks
// are told for cells below the heading, in pixels of the view's viewport.
void Bind(QTableView& view, TStringGrid& grid, IDialogs& dialogs);
// The tabs must stand in the order of the control's pages; each page's widget gets its name.
void Bind(QTabWidget& view, TPageControl& pages, IDialogs& dialogs);
// While the thumb is dragged the control hears of each position as Track; of its release, and of any other
// move by the user, as End.
void Bind(QScrollBar& view, TScrollBar& bar, IDialogs& dialogs);
// Each entry becomes an action that bears its name; one with entries below it becomes a menu, shown while any
// of them is. A caption "-" is a separator. The keys are shown only.
void Bind(QMenuBar& view, TMainMenu& menu, IDialogs& dialogs);
void Bind(QMenu& view, TPopupMenu& menu, IDialogs& dialogs);

// What binders are made of.

// Keeps the connection for as long as the object lives.
void Keep(QObject& view, TConnection connection);

// Name, visibility, hint, focus requests.
void BindControl(QWidget& view, TControl& control);

// Runs sync now and at each change of the control.
template <class TSync>
void KeepInStep(QObject& view, TControl& control, TSync sync) {
    sync();
    Keep(view, control.Changed.Connect(std::move(sync)));
}

// Runs the slot, guarded, at each signal of the view; it may leave the signal's arguments out.
template <class TView, class TSource, class... TArgs, class TSlot>
void OnSignal(TView& view, void (TSource::*signal)(TArgs...), IDialogs& dialogs, TSlot slot) {
    QObject::connect(
        &view, signal, &view,
        [&dialogs, slot = std::move(slot)](TArgs... args) {
            RunGuarded(
                dialogs,
                [&] {
                    if constexpr (std::is_invocable_v<const TSlot&, TArgs...>)
                        slot(args...);
                    else
                        slot();
                });
        });
}

// Whether Enter, of either block of keys, is pressed.
bool IsEnter(const QEvent& event);

} // namespace tidewell

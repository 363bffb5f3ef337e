#pragma once

#include "core/controls/Lists.h"
#include "desktop/binders/Binding.h"

class QComboBox;
class QGroupBox;
class QListView;
class QListWidget;
class QPlainTextEdit;

namespace tidewell {

void BindListBox(QListWidget& view, TListBox& list, IDialogs& dialogs);
void BindComboBox(QComboBox& view, TComboBox& box, IDialogs& dialogs);
// Fills the group with one radio button per item, one below the other.
void BindRadioGroup(QGroupBox& view, TRadioGroup& group, IDialogs& dialogs);
// A click anywhere, Enter and Space count as a click on the list. On a dark background the rows' colours are
// lightened as far as they need to be read.
void BindColorList(QListView& view, TColorList& list, IDialogs& dialogs);
void BindMemo(QPlainTextEdit& view, TMemo& memo);

} // namespace tidewell

#pragma once

#include "core/controls/Simple.h"
#include "desktop/binders/Binding.h"

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace tidewell {

class TCaptionPanel;
class TLedView;
class TPictureView;

void BindLabel(QLabel& view, TLabel& label);
void BindPanel(QWidget& view, TPanel& panel);
void BindPanel(TCaptionPanel& view, TPanel& panel);
// Bytes that are no picture show nothing.
void BindImage(TPictureView& view, TImage& image);
void BindButton(QPushButton& view, TButton& button, IDialogs& dialogs);
void BindCheckBox(QCheckBox& view, TCheckBox& checkBox, IDialogs& dialogs);
void BindProgressBar(QProgressBar& view, TProgressBar& bar);
void BindLed(TLedView& view, TALed& led);

} // namespace tidewell

#include "setpoints/InputDialog.h"

#include "core/ports/IDialogs.h"

namespace tidewell {

TInputDialog::TInputDialog(const TParts& parts) : TForm("InputDialog"), Parts(parts) {}
void TInputDialog::FormCreate(const TIniFile&) {}
void TInputDialog::PassValueToBinaryGrid(std::int32_t) {}
void TInputDialog::FormShow() {}
void TInputDialog::binaryvaluegridClick(const TCellClick&) {}
void TInputDialog::SendEnteredValue() {}
bool TInputDialog::ValueInRange(std::int32_t) {
    return Parts.Dialogs.WorkAreaHeight() > 0;
}

} // namespace tidewell

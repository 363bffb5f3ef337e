#include "setpoints/Finputdialog.h"

#include "core/AtExit.h"
#include "core/Guard.h"
#include "core/KvSupport.h"
#include "core/LanguageTexts.h"
#include "core/Numbers.h"
#include "core/controls/StatusBar.h"
#include "core/ports/IDialogs.h"
#include "link/NabtoDevice.h"
#include "model/ListField.h"
#include "model/ModbusPanel.h"
#include "setpoints/EnteredValue.h"

#include <utility>

namespace tidewell {

namespace {

constexpr std::string_view bitsCode = "100";
constexpr std::string_view lowFirstCode = "102";
constexpr std::string_view highFirstCode = "103";

// Pixels.
constexpr int narrowForm = 220;
constexpr int wideForm = 462;
constexpr int bitWidth = 25;
constexpr int lastBitWidth = 35;
constexpr int boxSize = 18;
constexpr int boxMargin = 2; // beside the box a click still counts

constexpr int bitCount = 16;

bool IsCharacterCode(std::string_view code) {
    return code == lowFirstCode || code == highFirstCode;
}

TCellRect BoxOf(const TCellRect& cell) {
    const int left = cell.Left + (cell.Right - cell.Left - boxSize) / 2;
    const int top = cell.Top + (cell.Bottom - cell.Top - boxSize) / 2;
    return {left, top, left + boxSize, top + boxSize};
}

} // namespace

TInputDialog::TInputDialog(const TNeeds& needs) : TForm("InputDialog"), Needs(needs) {
    for (TEdit* edit : {&EMin, &EMax, &EId, &EAdress})
        edit->SetReadOnly(true);
    EMin.SetEnabled(false);
    EMax.SetEnabled(false);
    TControl* const hidden[] = {&LabId, &EId, &LabAdress, &EAdress, &binaryvaluegrid};
    for (TControl* control : hidden)
        control->SetVisible(false);
    binaryvaluegrid.Cells.SetColCount(bitCount);
    binaryvaluegrid.Cells.SetRowCount(2);
    binaryvaluegrid.ColWidths.assign(bitCount, bitWidth);
    binaryvaluegrid.ColWidths.back() = lastBitWidth;
    binaryvaluegrid.BoxRect = BoxOf;
    binaryvaluegrid.OnClick = [this](const TCellClick& click) { binaryvaluegridClick(click); };
    EValue.OnChange = [this] { Touched = true; };
    ButSend.OnClick = [this] { ButSendClick(); };
    ButCancel.OnClick = [this] { Close(); };
    OnShow = [this] { FormShow(); };
    OnKeyDown = [this](EKey key, bool& handled) { FormKeyDown(key, handled); };
    OnCloseQuery = [this](bool&) { Needs.StatusBar.Repaint(); };
}

void TInputDialog::FormCreate(const TIniFile& language) {
    ReadTexts(language, "InputDialog",
              {{*this, "Header"},
               {ButSend, "ButOk"},
               {ButCancel, "ButCancel"},
               {LabId, "DeviceLab"},
               {LabAdress, "AdressLab"},
               {LabValue, "ValueLab"},
               {LabMin, "ValueMinLab"},
               {LabMax, "ValueMaxLab"},
               {MessageWrongValue, "MessageWrongValue"}});
}

void TInputDialog::FormShow() {
    Sending = false; // a send below which the dialog was closed may still be under way
    Touched = false;
    binaryvaluegrid.SetVisible(false);
    SplitRow(CurrentSetpointSpecific, CurrentList, false);
    SetCaption(std::string(Field(ListField::SetpointName)));
    EAdress.SetText(std::string(Field(ListField::ModbusAdr)));
    EMin.SetText(std::string(Field(ListField::Min)));
    EMax.SetText(std::string(Field(ListField::Max)));
    EId.SetText(std::to_string(SelectedModbusId()));
    EValue.SetFocus();
    ShowEntry(CurrentDatavalue);
    TMemo& log = Needs.MemoEventLog;
    log.Add("currentlist values");
    log.Add("MAdr: " + EAdress.Text() + " MinVal: " + EMin.Text() + " MaxVal: " + EMax.Text() + " ModbusID " +
            EId.Text());
    log.Add("End input value");
    SetFormWidth(narrowForm);
    const std::string_view code = Field(ListField::Enhed);
    if (code == bitsCode && !Field(ListField::User1).empty())
        ShowBits();
    else if (IsCharacterCode(code))
        ShowCharacters();
}

void TInputDialog::ShowEntry(const std::string& text) {
    EValue.SetText(text);
    if (ValueSelectAll)
        EValue.SelectAllRequested.Emit();
    else
        EValue.CaretAtEndRequested.Emit();
}

void TInputDialog::ShowBits() {
    binaryvaluegrid.SetVisible(true);
    binarystringlist = BitCaptions(CurrentList[ListField::User1]);
    binaryvaluegrid.Cells.SetRow(0, binarystringlist);
    binaryvaluegrid.Cells.ClearRow(1); // in case the value has no 16 digits
    PassValueToBinaryGrid(ToIntegerOr(Trim(CurrentDatavalue), 0));
    SetFormWidth(wideForm);
}

void TInputDialog::ShowCharacters() {
    const auto word = static_cast<std::uint16_t>(ToIntegerOr(Trim(CurrentDatavalue), 0));
    EValue.SetMaxLength(2); // and so it stays
    ShowEntry(CharactersOfWord(word, Field(ListField::Enhed) == lowFirstCode));
}

void TInputDialog::PassValueToBinaryGrid(std::int32_t value) {
    const std::string digits = BinaryString(value, bitCount);
    for (std::size_t column = 0; column < digits.size(); ++column)
        binaryvaluegrid.Cells.SetCell(column, 1, digits.substr(column, 1));
    binaryvaluegrid.Repaint();
}

void TInputDialog::FormKeyDown(EKey key, bool& handled) {
    handled = key == EKey::Return || key == EKey::Escape;
    if (key == EKey::Return)
        ButSend.Click();
    else if (key == EKey::Escape)
        Close();
}

void TInputDialog::binaryvaluegridClick(const TCellClick& click) {
    if (!FInMouseClick) {
        const TFlagged flagged(FInMouseClick);
        FlipBit(click);
    }
    std::string digits;
    for (std::size_t column = 0; column < bitCount; ++column)
        digits += binaryvaluegrid.Cells.Cell(column, 1) == "1" ? '1' : '0';
    EValue.SetText(std::to_string(BinaryToInteger(digits)));
    Touched = true;
}

void TInputDialog::FlipBit(const TCellClick& click) {
    if (click.Row != 1 || click.Column < 0 || click.Column >= bitCount ||
        !BoxOf(click.Cell).Grown(boxMargin).Contains(click.X, click.Y))
        return;
    const auto column = static_cast<std::size_t>(click.Column);
    binaryvaluegrid.Cells.SetCell(column, 1, binaryvaluegrid.Cells.Cell(column, 1) == "1" ? "0" : "1");
    binaryvaluegrid.Repaint();
}

// The event loop runs while a value is sent; what is clicked meanwhile must not send it twice.
void TInputDialog::ButSendClick() {
    if (Sending)
        return;
    const TFlagged flagged(Sending);
    SendEnteredValue();
}

std::string TInputDialog::EntryAsNumber() const {
    const std::string_view code = Field(ListField::Enhed);
    return IsCharacterCode(code) ? std::to_string(WordOfCharacters(EValue.Text(), code == lowFirstCode))
                                 : EValue.Text();
}

void TInputDialog::SendEnteredValue() {
    long double value = 0;
    if (const std::size_t errorPosition = ParseEntry(EntryAsNumber(), value); errorPosition != 0) {
        Refuse(MessageWrongValue + " ErrorNumber: " + std::to_string(errorPosition));
        return;
    }
    const std::int32_t decimals = IntegerField(ListField::Decimal);
    const std::int32_t offset = IntegerField(ListField::Offset);
    // Not every word comes back from its shown form.
    const std::int64_t s = PresentRaw && !Touched ? *PresentRaw + offset : EnteredToS(value, decimals);
    TMemo& log = Needs.MemoEventLog;
    log.Add("start Input write value");
    log.Add("decimal: " + std::to_string(decimals < 1 ? EntryDivisor(decimals) : decimals) +
            " Input value: " + EValue.Text() + " FloatValue: " + GeneralText(value) +
            " sValue: " + std::to_string(s) + " offset " + std::to_string(offset));
    log.Add("End input value");
    if (!ValueInRange(s)) {
        Refuse(MessageWrongValue);
        return;
    }
    const std::int32_t eeAddress = IntegerField(ListField::EEadr);
    const std::int32_t writeType = IntegerField(ListField::User5);
    const TDeviceUse::TAction action(Needs.Device.Use);
    // The dialog may have been closed, and shown for another row, while the device was taken.
    if (!action || !Visible() || !Sending || !Needs.Device.initialized || !Needs.Device.isEnabled())
        return;
    {
        const TWaitCursor wait(Needs.Dialogs);
        Needs.Device.SendValue(action, static_cast<std::int32_t>(s - offset), eeAddress, writeType);
    }
    Close();
}

bool TInputDialog::ValueInRange(std::int64_t s) {
    const std::int32_t decimals = IntegerField(ListField::Decimal);
    const std::int32_t offset = IntegerField(ListField::Offset);
    const long double minimum = ShownToRaw(Field(ListField::Min), decimals, offset);
    const long double maximum = ShownToRaw(Field(ListField::Max), decimals, offset);
    const std::int64_t raw = s - offset;
    const auto compared = static_cast<long double>(raw);
    // A limit is shown with eight digits, so that of a register of 32 bits may lie beyond what those hold.
    const bool result = minimum <= compared && compared <= maximum && std::in_range<std::int32_t>(raw);
    TMemo& log = Needs.MemoEventLog;
    log.Add("Start TestBlock");
    log.Add("ComparedValue " + std::to_string(raw) + " Decimal: " + std::to_string(decimals) +
            " Min: " + GeneralText(minimum) + " Max: " + GeneralText(maximum) + " offset " +
            std::to_string(offset) + " Result " + BooleanText(result));
    log.Add("End TestBlock");
    return result;
}

void TInputDialog::Refuse(const std::string& message) {
    Needs.Dialogs.ShowMessage(message);
    EValue.SetFocus();
    EValue.SelectAllRequested.Emit();
}

std::string_view TInputDialog::Field(std::size_t index) const {
    return index < CurrentList.size() ? Trim(CurrentList[index]) : std::string_view();
}

std::int32_t TInputDialog::IntegerField(std::size_t index) const {
    return ToIntegerOr(Field(index), 0);
}

std::int32_t TInputDialog::SelectedModbusId() const {
    const TMDeviceList& devices = Needs.Panel.DeviceList;
    const int selected = Needs.Panel.SelectedDevice;
    if (selected < 0 || static_cast<std::size_t>(selected) >= devices.Count())
        return -1;
    const TMDevice& device = devices.GetDevice(static_cast<std::size_t>(selected));
    return device.ReadList.empty() ? -1 : ToIntegerOr(Trim(GetRowField(device.ReadList.front(), 0)), -1);
}

} // namespace tidewell

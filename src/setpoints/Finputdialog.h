#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class IDialogs;
class TIniFile;
class TModbusPanel;
class TNabtoDevice;
class TStatusBar;

// The modal dialog that changes one setpoint: a number, 16 bits, or two characters. It converts the entry to
// the raw integer of the device, checks the row's limits and sends it. The caller sets its
// fields before each showing.
class TInputDialog : public TForm {
  public:
    struct TNeeds {
        IDialogs& Dialogs;
        const TModbusPanel& Panel; // its selected device gives the Modbus ID
        TNabtoDevice& Device;
        TMemo& MemoEventLog;
        TStatusBar& StatusBar; // of the main form
    };

    explicit TInputDialog(const TNeeds& needs);

    // Captions and MessageWrongValue of section InputDialog.
    void FormCreate(const TIniFile& language);

    std::string CurrentSetpointSpecific;    // list row, limits in shown form
    std::string CurrentDatavalue;           // text to start with
    bool ValueSelectAll = false;            // it is the present value, and not what the user began to type
    std::optional<std::int64_t> PresentRaw; // if any, what is sent while nobody touches the entry

    // The 16 digits of row 1 of the grid, most significant first. Throws ERangeError for a value that needs
    // more.
    void PassValueToBinaryGrid(std::int32_t value);

    TLabel LabMin{*this, "LabMin"};
    TLabel LabMax{*this, "LabMax"};
    TLabel LabValue{*this, "LabValue"};
    TLabel LabId{*this, "LabId"};
    TLabel LabAdress{*this, "LabAdress"};
    TEdit EMin{*this, "EMin"};
    TEdit EMax{*this, "EMax"};
    TEdit EValue{*this, "EValue"};
    TEdit EId{*this, "EId"};
    TEdit EAdress{*this, "EAdress"};
    TButton ButSend{*this, "ButSend"};
    TButton ButCancel{*this, "ButCancel"};
    TStringGrid binaryvaluegrid{*this, "binaryvaluegrid"}; // row 0: bit names, row 1: "1" or "0"

    // Pixels, of the grid.
    static constexpr int BitNameHeight = 49;
    static constexpr int BitHeight = 40;
    static constexpr int BitGridWidth = 420;
    static constexpr int BitNameAngle = 65; // degrees, counter-clockwise

  private:
    void FormShow();
    void ShowBits();
    void ShowCharacters();
    void ShowEntry(const std::string& text);
    std::string EntryAsNumber() const;
    void SetFormWidth(int width) { SetClientSize(width, ClientHeight()); }
    void FormKeyDown(EKey key, bool& handled);
    void binaryvaluegridClick(const TCellClick& click);
    void FlipBit(const TCellClick& click);
    void ButSendClick();
    // Conversion failures of the row throw EConvertError.
    void SendEnteredValue();
    bool ValueInRange(std::int64_t s);
    void Refuse(const std::string& message);
    // Trimmed; empty beyond the last field.
    std::string_view Field(std::size_t index) const;
    std::int32_t IntegerField(std::size_t index) const; // 0 if it is none
    std::int32_t SelectedModbusId() const;              // -1 without a device, or without a number

    TNeeds Needs;
    std::vector<std::string> CurrentList; // fields of the row
    std::vector<std::string> binarystringlist;
    std::string MessageWrongValue;
    bool FInMouseClick = false;
    bool Sending = false;
    bool Touched = false; // the entry, by the user
};

} // namespace tidewell

#pragma once

#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "core/controls/StringGrid.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tidewell {

class IDialogs;
class TIniFile;
class TModbusPanel;
class TNabtoDevice;

// The modal dialog that changes one setpoint: a number, 16 bits, or two characters. It converts the entry to
// the raw integer of the device, checks the row's limits and sends it. The caller sets the three fields
// before each showing.
class TInputDialog : public TForm {
  public:
    // What the dialog needs of the main form.
    class IHost {
      public:
        virtual ~IHost() = default;
        virtual void RepaintStatusBar() = 0;
    };
    struct TParts {
        IDialogs& Dialogs;
        const TModbusPanel& Panel; // its selected device gives the Modbus ID
        TNabtoDevice& Device;
        TMemo& MemoEventLog;
        IHost& Host;
    };

    explicit TInputDialog(const TParts& parts);

    // Captions and MessageWrongValue of section InputDialog.
    void FormCreate(const TIniFile& languageFile);

    std::string CurrentSetpointSpecific; // list row, limits in shown form
    std::string CurrentDatavalue;        // text to start with
    bool ValueSelectAll = false;         // it is the present value, and not what the user began to type

    // The 16 digits of row 1 of the grid, most significant first.
    void PassValueToBinaryGrid(std::int32_t value);

    TLabel LabMin{"LabMin"};
    TLabel LabMax{"LabMax"};
    TLabel LabValue{"LabValue"};
    TLabel LabId{"LabId"};
    TLabel LabAdress{"LabAdress"};
    TEdit EMin{"EMin"};
    TEdit EMax{"EMax"};
    TEdit EValue{"EValue"};
    TEdit EId{"EId"};
    TEdit EAdress{"EAdress"};
    TButton ButSend{"ButSend"};
    TButton ButCancel{"ButCancel"};
    TStringGrid binaryvaluegrid{"binaryvaluegrid"}; // row 0: bit names, row 1: "1" or "0"

    static constexpr int BitNameAngle = 65; // degrees, counter-clockwise

  private:
    void FormShow();
    void binaryvaluegridClick(const TCellClick& click);
    void SendEnteredValue();
    bool ValueInRange(std::int32_t s);

    TParts Parts;
    std::vector<std::string> CurrentList; // fields of the row
    std::vector<std::string> binarystringlist;
    std::string MessageWrongValue;
    bool FInMouseClick = false;
};

} // namespace tidewell

#pragma once

#include "core/controls/Color.h"

#include <QDialog>

#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QPushButton;

namespace tidewell {

class TSLScope;

// Visibility, colour and axis of each channel of a surface, set when the user says OK.
class TChannelSettings : public QDialog {
  public:
    TChannelSettings(TSLScope& scope, QWidget* parent);
    // Sets what was chosen; nothing if the surface has other channels by now.
    void accept() override;

  private:
    struct TRow {
        std::string Name; // without its live value
        TColor Color;
        QCheckBox* Visible = nullptr; // children, here and below
        QPushButton* ColorButton = nullptr;
        QComboBox* Axis = nullptr;
    };
    void AddRow(QGridLayout& grid, std::size_t channel);
    void ChooseColor(std::size_t channel);
    void ShowColor(std::size_t channel);
    bool HasSameChannels() const;

    TSLScope& Scope;
    std::vector<TRow> Rows; // one per channel
};

} // namespace tidewell

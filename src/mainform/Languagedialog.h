#pragma once

#include "core/Extensions.h"
#include "core/IniFile.h"
#include "core/Paths.h"
#include "core/controls/Form.h"
#include "core/controls/Lists.h"
#include "core/controls/Simple.h"
#include "mainform/Ports.h"

#include <string>

namespace tidewell {

// Chooses the language file for the next start, and starts the program anew.
class Tlanguagedialog : public TForm {
  public:
    static constexpr int InitialWidth = 425; // pixels
    static constexpr int InitialHeight = 185;

    Tlanguagedialog(const TPorts& ports, const TStartOptions& options, const TExtensions& extensions,
                    const TCurrentInifilesPath& paths);

    TRadioGroup langgroup{*this, "langgroup"};
    TButton Button{*this, "Button"};

    void FormCreate(const TIniFile& language);
    void FormShow();
    // Throws EListError when no file is selected.
    void ButtonClick();

  private:
    const TPorts& Ports;
    const TStartOptions& Options;
    const TExtensions& Extensions;
    const TCurrentInifilesPath& Paths;
    std::string Restart;
};

} // namespace tidewell

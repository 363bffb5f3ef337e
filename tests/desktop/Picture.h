#pragma once

#include "ProgramOnScreen.h"
#include "Robot.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

namespace tidewell::test {

struct TStage {
    TProgramOnScreen& Screen;
    TRobot& Robot;
};

// How a window comes up, and what it shows. A picture of another window is a row more.
struct TPicture {
    QString Name;
    QString Window;                             // its object name
    std::vector<std::string> Arguments;         // of the program
    std::function<void(TStage)> Before;         // from the start to the window; unset: the start brings it up
    std::function<void(QWidget&, TStage)> Fill; // unset: shown as it comes up
};

std::vector<TPicture> SetpointPictures();
std::vector<TPicture> GraphPictures();
std::vector<TPicture> ServicePictures();

} // namespace tidewell::test

#include "desktop/Desktop.h"

int main(int argc, char** argv) {
    return tidewell::RunDesktop(
        argc, argv,
        {TIDEWELL_VERSION_MAJOR, TIDEWELL_VERSION_MINOR, TIDEWELL_VERSION_RELEASE, TIDEWELL_VERSION_BUILD});
}

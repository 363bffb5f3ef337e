#include <gmock/gmock.h>

#include <clocale>
#include <iostream>
#include <locale>

// All tests run under the locale of the environment, as the program does; a locale that is not there would
// prove nothing, so it fails.
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (std::setlocale(LC_ALL, "") == nullptr) {
        std::cerr << "The locale of the environment is not installed\n";
        return 1;
    }
    std::locale::global(std::locale(""));
    return RUN_ALL_TESTS();
}

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tidewell {

// The help document and the page of each help number. Nothing fills Fileexist and Pages yet, so that F1 stays
// inert.
struct THelpfileDoc {
    bool Fileexist = false;
    std::filesystem::path DocAndPath;
    std::string Doc;
    std::filesystem::path PDFReaderPrg;
    std::vector<std::string> ParaID; // help numbers of the chosen group, one per row that has one
    std::int32_t currentParaID = 0;  // of the selected row; 0 if none
    struct TPage {
        std::int32_t ParaID = 0;
        int Page = 1;
    };
    std::vector<TPage> Pages;
};

} // namespace tidewell

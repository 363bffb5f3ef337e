#include "link/FirmwarePackage.h"

#include "core/Errors.h"
#include "core/KvSupport.h"
#include "link/FirmwareUpdateTexts.h"
#include "support/MemoryFiles.h"

#include <gtest/gtest.h>

namespace tidewell::test {

namespace {

// A package, or what was thrown.
struct TRead {
    TFirmwarePackage Package;
    std::string Error;
};

TRead Read(const std::string& config, const std::string& transfer = {}) {
    TMemoryFiles files;
    files.Put("/p/config.fwc", config);
    if (!transfer.empty())
        files.Put("/p/pc_cfg.fwc", transfer);
    try {
        return {ReadFirmwarePackage(files, "/p/config.fwc"), {}};
    } catch (const EConvertError& error) {
        return {{}, error.what()};
    }
}

TEST(FirmwarePackage, Masks) {
    struct TCase {
        std::string Mask;
        std::uint32_t Bits;
        std::string Digits; // s: sent, v: verified too, -: left out; from the first of four files
    };
    for (const auto& [mask, bits, digits] :
         std::vector<TCase>{{"", 0, "----"},
                            {"3x21", 3, "vs--"},
                            {"1", 1, "v---"},
                            {"0101", 5, "v-v-"},
                            {"0201", 5, "v-s-"},
                            {"1000", 8, "---v"},
                            {"11111", 31, "vvvv"}, // longer than the list
                            {"0000012", 3, "sv--"},
                            {"1" + std::string(31, '0'), 0x80000000U, "----"}}) {
        const TFirmwarePackage package = Read("Number of files: " + mask + "\n").Package;
        EXPECT_EQ(package.FileMask, mask);
        EXPECT_EQ(package.FileMaskBits, bits) << mask;
        std::string got;
        for (std::size_t i = 0; i < 4; ++i)
            got += package.Verified(i) ? 'v' : package.Sent(i) ? 's' : '-';
        EXPECT_EQ(got, digits) << mask;
    }
}

TEST(FirmwarePackage, ConfigurationLines) {
    struct TCase {
        std::string Config;
        std::string Expected; // mask and, for each file, name,crc,size; or the error
    };
    const std::string notValid = " is not a valid integer value (";
    for (const auto& [config, expected] : std::vector<TCase>{
             {"", ""},
             {"nothing of it", ""},
             {"Filename: a\nCRC: 12 h\nSize: 1\n", "'12 h'" + notValid + "CRC32, line 2 of /p/config.fwc)"},
             {"x\nFilename: a\nCRC: 1\n", "''" + notValid + "Filesize, line 4 of /p/config.fwc)"},
             {"Filename: a\nCRC: 1", "''" + notValid + "Filesize, line 3 of /p/config.fwc)"},
             {"Filename: a", "''" + notValid + "CRC32, line 2 of /p/config.fwc)"},
             {"Number of files: 1" + std::string(32, '0'),
              "'1" + std::string(32, '0') +
                  "' has more than 32 binary digits (Number of files in /p/config.fwc)"},
             {"Package 7\r\nNumber of files (mask): x: 011 \r\n\r\nFilename: dir: 1234_main.bin \r\n"
              "whatever: $FFFFFFFF\r\n0x10\r\nfilename: small letters\r\n",
              "011|1234_main.bin,4294967295,16"},
             // The last mask counts, and 32 bits of a number are kept; a line may be two things.
             {"Filename 2:\nFilename crc: 12\nNumber of files: 4294967301\n:7\n", "4294967301|,12,5|12,5,7"},
         }) {
        const TRead read = Read(config);
        std::string got = read.Error + read.Package.FileMask;
        for (const TUpdateFile& file : read.Package.Files)
            got += "|" + file.filename + "," + std::to_string(file.crc) + "," + std::to_string(file.filesize);
        EXPECT_EQ(got, expected) << config;
    }
    const TMemoryFiles files;
    EXPECT_THROW(ReadFirmwarePackage(files, "/p/config.fwc"), EInOutError);
}

TEST(FirmwarePackage, TransferLines) {
    const std::string config = "Filename: a\n1\n1\nFilename: b\n2\n2\n";
    const std::string none = ",0,0,0";
    struct TCase {
        const char* Line;
        std::string First, Second; // fileId,swversion,TransferType,RPCModel of both files
    };
    for (const auto& [line, first, second] : std::vector<TCase>{
             {"VersionFName2:2", none, none},
             {"VersionFName2:2:4019:", none, none},
             {"File_Transfer:2:1", none, none},
             {"File_Transfer:2:1:2:", none, none},
             {"VersionFName2:-1:1", none, none},
             {"VersionFName2:0:1", none, none},
             {"VersionFName2:3:1", none, none},
             {"VersionFName2:two:1", none, none},
             {"versionfname2:2:1", none, none},
             {"VersionFName1:1:4019", "VersionFName1,4019,0,0", none},
             {"VersionFName2:2:4019", none, "VersionFName2,4019,0,0"},
             {" \"VersionFName2\":2:40x", none, " \"VersionFName2\",0,0,0"},
             {"File_Transfer:1:1:2", ",0,1,2", none},
             {"File_Transfer:2:1:2", none, ",0,1,2"},
             {"Version_Transfer:2:1:2", none, ",0,1,2"},
             {"_Transfer:2:one:", none, none},
         }) {
        const auto files = Read(config, line).Package.Files;
        const auto text = [](const TUpdateFile& file) {
            return file.fileId + "," + std::to_string(file.swversion) + "," +
                   std::to_string(file.TransferType) + "," + std::to_string(file.RPCModel);
        };
        EXPECT_EQ(text(files.at(0)), first) << line;
        EXPECT_EQ(text(files.at(1)), second) << line;
    }
}

// What the strict reading tells of a package of two images, of 3 and 4 bytes.
TEST(FirmwarePackage, Mistakes) {
    struct TCase {
        std::string Mask, Sizes, Transfer;
        std::vector<std::string> Mistakes;
        const char* TransferName = "pc_cfg.fwc";
    };
    const auto line = [](int number, const std::string& text) {
        return "Line " + std::to_string(number) + " of /p/pc_cfg.fwc is not well formed: " + text;
    };
    const std::string beyond = "' chooses a file beyond the 2";
    const std::string nothing = "' chooses no file";
    const std::string mask = "Number of files: '";
    for (const auto& [digits, sizes, transfer, mistakes, name] : std::vector<TCase>{
             {"11", "34", "", {}},
             {"12",
              "34",
              "; of: 1\n# of: 2\n // of: 3\nHeading\n\nVersionFName1:1:5\nA_Transfer:2:0:0\n",
              {}},
             {"1", "30", "", {}}, // the second is not sent
             {"10", "04", "", {}},
             {"011", "34", "", {}}, // longer than the list, but chooses none beyond
             {"", "34", "", {mask + nothing}},
             {"30", "34", "", {mask + "30" + nothing}},
             {"100", "34", "", {mask + "100" + beyond}},
             {"0211", "34", "", {mask + "0211" + beyond}},
             {"11", "35", "", {"/p/b.bin has 4 bytes, not 5"}},
             {"11", "24", "", {"/p/a.bin has 3 bytes, not 2"}},
             {"11", "x4", "", {"'x' is not a valid integer value (Filesize, line 4 of /p/config.fwc)"}},
             {"11",
              "34",
              "VersionFName1 1\nA_Transfer\n",
              {line(1, "VersionFName1 1"), line(2, "A_Transfer")}},
             {"11",
              "34",
              "\nheading: x\nVersionFName1:1:5x",
              {line(2, "heading: x"), line(3, "VersionFName1:1:5x")}},
             {"11",
              "34",
              "A_Transfer:1:x:0\nA_Transfer:1:0:x\nA_Transfer:3:0:0\n",
              {line(1, "A_Transfer:1:x:0"), line(2, "A_Transfer:1:0:x"), line(3, "A_Transfer:3:0:0")}},
             {"11", "34", "x:", {"Line 1 of /p/PC_CFG.fwc is not well formed: x:"}, "PC_CFG.fwc"},
         }) {
        TMemoryFiles files;
        files.Put("/p/a.bin", "abc");
        files.Put("/p/b.bin", "defg");
        files.Put("/p/config.fwc", "Number of files: " + digits + "\nFilename: a.bin\n1\n" + sizes[0] +
                                       "\nFilename: b.bin\n2\n" + sizes[1] + "\n");
        files.Put(std::string("/p/") + name, transfer);
        EXPECT_EQ(CheckFirmwarePackage(files, "/p/config.fwc", {}).Mistakes, mistakes) << digits << transfer;
    }
    TMemoryFiles files;
    files.Put("/p/config.fwc", "Filename: sub\\none.bin\n1\n1\nNumber of files: 1");
    files.Put("/p/PC_CFG.FWC", "x:"); // not the one of the exact name
    files.Put("/p/pc_cfg.fwc", "");
    EXPECT_EQ(CheckFirmwarePackage(files, "/p/config.fwc", {}).Mistakes,
              std::vector<std::string>{"Cannot read /p/sub/none.bin: No such file or directory"});
    files.Put("/p/config.fwc", "Number of files: 1");
    EXPECT_EQ(CheckFirmwarePackage(files, "/p/config.fwc", {}).Mistakes.front(),
              "/p/config.fwc names no file");
}

TEST(FirmwarePackage, Routes) {
    using enum ERoad;
    struct TCase {
        int Type, Model;
        ERoad First, Repeat;
    };
    for (const auto& [type, model, first, repeat] : std::vector<TCase>{{0, 2, PreEraseAndStream, Stream},
                                                                       {0, 0, Stream, Stream},
                                                                       {0, -1, Stream, Stream},
                                                                       {1, 0, RpcMain, RpcMain},
                                                                       {1, 1, RpcDisplay, RpcDisplay},
                                                                       {1, 2, RpcTarget, None},
                                                                       {1, 3, None, None},
                                                                       {2, 2, PreEraseAndStream, None},
                                                                       {2, 0, Stream, RpcMain},
                                                                       {2, 1, Stream, RpcDisplay},
                                                                       {2, 3, None, None},
                                                                       {3, 0, None, None},
                                                                       {-1, 2, None, None}}) {
        TUpdateFile file;
        file.TransferType = type;
        file.RPCModel = model;
        EXPECT_EQ(FirstRoad(file), first) << type << "/" << model;
        EXPECT_EQ(RepeatRoad(file), repeat) << type << "/" << model;
    }
}

TEST(FirmwarePackage, ModelsAndPaths) {
    EXPECT_FALSE(FitsModel("AB1234_main.bin", "1234"));
    EXPECT_FALSE(FitsModel("1235_main.bin", "1234"));
    EXPECT_FALSE(FitsModel("1234_main.bin", ""));
    EXPECT_TRUE(FitsModel("1234_main.bin", "1234"));
    EXPECT_TRUE(FitsModel("A1234_main.bin", "1234"));
    EXPECT_EQ(ImagePath("/p", "sub\\a.bin"), "/p/sub/a.bin");
    EXPECT_EQ(ImagePath("/p", "/a.bin"), "/p/a.bin"); // always below
}

} // namespace

} // namespace tidewell::test

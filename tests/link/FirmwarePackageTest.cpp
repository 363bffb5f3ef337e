#include "link/FirmwarePackage.h"

#include "core/Errors.h"
#include "support/MemoryFiles.h"

#include <gmock/gmock.h>

namespace tidewell::test {

namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

TFirmwarePackage Read(const std::string& config, const std::string& transfer = {}) {
    TMemoryFiles files;
    files.Put("/p/config.fwc", config);
    if (!transfer.empty())
        files.Put("/p/pc_cfg.fwc", transfer);
    return ReadFirmwarePackage(files, "/p/config.fwc");
}

TEST(FirmwarePackage, Masks) {
    struct TCase {
        const char* Mask;
        std::uint32_t Bits;
        std::string Digits; // s: sent, v: verified too, -: left out; from the first of four files
    };
    for (const auto& [mask, bits, digits] : std::vector<TCase>{{"0101", 5, "v-v-"},
                                                               {"0201", 5, "v-s-"},
                                                               {"1", 1, "v---"},
                                                               {"", 0, "----"},
                                                               {"0000012", 3, "sv--"},
                                                               {"3x21", 3, "vs--"},
                                                               {"11111", 31, "vvvv"}}) {
        const auto package = Read(std::string("Number of files: ") + mask + "\n");
        EXPECT_EQ(package.FileMask, mask);
        EXPECT_EQ(package.FileMaskBits, bits) << mask;
        std::string got;
        for (std::size_t i = 0; i < 4; ++i)
            got += package.Verified(i) ? 'v' : package.Sent(i) ? 's' : '-';
        EXPECT_EQ(got, digits) << mask;
    }
    EXPECT_THROW(Read("Number of files: 1" + std::string(32, '0')), EConvertError);
}

TEST(FirmwarePackage, ConfigurationLines) {
    const auto package = Read("Package 7\r\nNumber of files (mask): x: 011 \r\n\r\n"
                              "Filename: dir: 1234_main.bin \r\nwhatever: $FFFFFFFF\r\n0x10\r\n"
                              "filename: small letters\r\n"
                              "Filename 2:\r\nFilename crc: 12\r\nNumber of files: 4294967301\r\n:7\r\n");
    EXPECT_EQ(package.FileMask, "4294967301"); // the last such line, wherever it stands
    ASSERT_EQ(package.Files.size(), 3U);
    EXPECT_EQ(package.Files[0].filename, "1234_main.bin");
    EXPECT_EQ(package.Files[0].crc, 0xFFFFFFFFU);
    EXPECT_EQ(package.Files[0].filesize, 16U);
    EXPECT_EQ(package.Files[1].filename, "");
    EXPECT_EQ(package.Files[1].crc, 12U);
    EXPECT_EQ(package.Files[1].filesize, 5U); // 32 bits are kept
    EXPECT_EQ(package.Files[2].filename, "12");
    EXPECT_EQ(package.Files[2].crc, 5U);
    EXPECT_EQ(package.Files[2].filesize, 7U);
    EXPECT_TRUE(Read("nothing of it").Files.empty());

    EXPECT_THAT(
        [] { Read("Filename: a\nCRC: 12 h\nSize: 1\n"); },
        ThrowsMessage<EConvertError>("'12 h' is not a valid integer value (CRC32, line 2 of /p/config.fwc)"));
    EXPECT_THAT(
        [] { Read("x\nFilename: a\nCRC: 1\n"); },
        ThrowsMessage<EConvertError>("'' is not a valid integer value (Filesize, line 4 of /p/config.fwc)"));
    TMemoryFiles files;
    EXPECT_THROW(ReadFirmwarePackage(files, "/p/config.fwc"), EInOutError);
}

TEST(FirmwarePackage, TransferLines) {
    const std::string config = "Filename: a\n1\n1\nFilename: b\n2\n2\n";
    struct TCase {
        const char* Line;
        std::string Expected; // of file 2: fileId,swversion,TransferType,RPCModel
    };
    for (const auto& [line, expected] : std::vector<TCase>{
             {"VersionFName2:2:4019", "VersionFName2,4019,0,0"},
             {" \"VersionFName2\":2:40x", " \"VersionFName2\",0,0,0"},
             {"File_Transfer:2:1:2", ",0,1,2"},
             {"Version_Transfer:2:1:2", ",0,1,2"},
             {"_Transfer:2:one:", ",0,0,0"},
             {"VersionFName2:2:4019:", ",0,0,0"},
             {"VersionFName2:2", ",0,0,0"},
             {"File_Transfer:2:1", ",0,0,0"},
             {"VersionFName2:3:1", ",0,0,0"},
             {"VersionFName2:0:1", ",0,0,0"},
             {"VersionFName2:-1:1", ",0,0,0"},
             {"VersionFName2:two:1", ",0,0,0"},
             {"versionfname2:2:1", ",0,0,0"},
         }) {
        const auto file = Read(config, line).Files.at(1);
        EXPECT_EQ(file.fileId + "," + std::to_string(file.swversion) + "," +
                      std::to_string(file.TransferType) + "," + std::to_string(file.RPCModel),
                  expected)
            << line;
    }
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

TEST(FirmwarePackage, Models) {
    EXPECT_TRUE(FitsModel("1234_main.bin", "1234"));
    EXPECT_TRUE(FitsModel("A1234_main.bin", "1234"));
    EXPECT_FALSE(FitsModel("AB1234_main.bin", "1234"));
    EXPECT_FALSE(FitsModel("1235_main.bin", "1234"));
    EXPECT_FALSE(FitsModel("1234_main.bin", ""));
}

} // namespace

} // namespace tidewell::test

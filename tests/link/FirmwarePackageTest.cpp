#include "link/FirmwarePackage.h"

#include "link/FirmwareUpdateTexts.h"
#include "rig/Test.h"

namespace tidewell::test {
namespace {

TFirmwarePackage Read(const std::string& config, const std::string& transfer = {}) {
    TMemoryFiles files;
    files.Put("/p/config.fwc", config);
    if (!transfer.empty())
        files.Put("/p/pc_cfg.fwc", transfer);
    return ReadFirmwarePackage(files, "/p/config.fwc");
}

std::string Mistakes(const TMemoryFiles& files) {
    return Join(CheckFirmwarePackage(files, "/p/config.fwc", {}).Mistakes, "|");
}

// The bits of the mask and, from the first of four files, s: sent, v: verified too, -: left out.
TEST(FirmwarePackage, Masks) {
    ExpectRows(
        [](std::string_view mask) {
            const TFirmwarePackage package = Read("Number of files: " + std::string(mask) + "\n");
            EXPECT_EQ(package.FileMask, mask);
            std::string got = std::to_string(package.FileMaskBits) + " ";
            for (std::size_t i = 0; i < 4; ++i)
                got += package.Verified(i) ? 'v' : package.Sent(i) ? 's' : '-';
            return got;
        },
        {" -> 0 ----", "3x21 -> 3 vs--", "1 -> 1 v---", "0101 -> 5 v-v-", "0201 -> 5 v-s-", "1000 -> 8 ---v",
         "11111 -> 31 vvvv", "0000012 -> 3 sv--", "10000000000000000000000000000000 -> 2147483648 ----"});
}

// The mask, and name, CRC and size of each file.
TEST(FirmwarePackage, ConfigurationLines) {
    const auto read = [](std::string_view config) {
        const TFirmwarePackage package = Read(std::string(config));
        std::string got = package.FileMask;
        for (const TUpdateFile& file : package.Files)
            got += "|" + file.filename + "," + std::to_string(file.crc) + "," + std::to_string(file.filesize);
        return got;
    };
    const std::string notValid = " is not a valid integer value (";
    ExpectRows(read,
               {" -> ", "nothing of it -> ",
                "Filename: a\nCRC: 12 h\nSize: 1\n -> '12 h'" + notValid + "CRC32, line 2 of /p/config.fwc)",
                "Filename: a\nCRC: 1 -> ''" + notValid + "Filesize, line 3 of /p/config.fwc)",
                "Filename: a -> ''" + notValid + "CRC32, line 2 of /p/config.fwc)",
                "Number of files: 100000000000000000000000000000000 -> '10000000000000000000000000000000"
                "0' has more than 32 binary digits (Number of files in /p/config.fwc)"});
    // The last mask counts, and 32 bits of a number are kept; a line may be two things.
    ExpectRows(read, {"Package 7\r\nNumber of files (mask): x: 011 \r\n\r\nFilename: dir: 1234_main.bin \r\n"
                      "whatever: $FFFFFFFF\r\n0x10\r\nfilename: small letters\r\n -> "
                      "011|1234_main.bin,4294967295,16",
                      "Filename 2:\nFilename crc: 12\nNumber of files: 4294967301\n:7\n -> "
                      "4294967301|,12,5|12,5,7"});
}

// File id, version, transfer type and RPC model of two files.
TEST(FirmwarePackage, TransferLines) {
    const auto read = [](std::string_view line) {
        std::string got;
        for (const TUpdateFile& file :
             Read("Filename: a\n1\n1\nFilename: b\n2\n2\n", std::string(line)).Files)
            got += file.fileId + "," + std::to_string(file.swversion) + "," +
                   std::to_string(file.TransferType) + "," + std::to_string(file.RPCModel) + " ";
        return got;
    };
    for (const char* line :
         {"VersionFName2:2", "VersionFName2:2:4019:", "File_Transfer:2:1",
          "File_Transfer:2:1:2:", "VersionFName2:-1:1", "VersionFName2:0:1", "VersionFName2:3:1",
          "VersionFName2:two:1", "versionfname2:2:1", "_Transfer:2:one:"})
        EXPECT_EQ(read(line), ",0,0,0 ,0,0,0 ") << line;
    ExpectRows(read, {"VersionFName1:1:4019 -> VersionFName1,4019,0,0 ,0,0,0 ",
                      "VersionFName2:2:4019 -> ,0,0,0 VersionFName2,4019,0,0 ",
                      " \"VersionFName2\":2:40x -> ,0,0,0  \"VersionFName2\",0,0,0 ",
                      "File_Transfer:1:1:2 -> ,0,1,2 ,0,0,0 ", "File_Transfer:2:1:2 -> ,0,0,0 ,0,1,2 ",
                      "Version_Transfer:2:1:2 -> ,0,0,0 ,0,1,2 "});
}

// Mask, the sizes told of two images, of 3 and 4 bytes, and the transfer lines.
TEST(FirmwarePackage, TheStrictReadingTellsAllThatIsWrong) {
    TMemoryFiles files;
    files.Put("/p/a.bin", "abc");
    files.Put("/p/b.bin", "defg");
    std::string name = "/p/pc_cfg.fwc";
    const auto checked = [&](std::string_view input) {
        const std::string sizes = Piece(input, 1);
        files.Put("/p/config.fwc", "Number of files: " + Piece(input, 0) + "\nFilename: a.bin\n1\n" +
                                       sizes[0] + "\nFilename: b.bin\n2\n" + sizes[1] + "\n");
        files.Put(name, Piece(input, 2));
        return Mistakes(files);
    };
    for (const std::string line : {"VersionFName1 1", "A_Transfer", "heading: x", "VersionFName1:1:5x",
                                   "A_Transfer:1:x:0", "A_Transfer:1:0:x", "A_Transfer:3:0:0"})
        EXPECT_EQ(checked("11|34|\n" + line), "Line 2 of /p/pc_cfg.fwc is not well formed: " + line);
    ExpectRows(checked,
               {"100|34| -> Number of files: '100' chooses a file beyond the 2",
                "0211|34| -> Number of files: '0211' chooses a file beyond the 2",
                "11|35| -> /p/b.bin has 4 bytes, not 5",
                "11|x4| -> 'x' is not a valid integer value (Filesize, line 4 of /p/config.fwc)",
                "11|34| -> ",
                "12|34|; of: 1\n# of: 2\n // of: 3\nHeading\n\nVersionFName1:1:5\nA_Transfer:2:0:0\n -> ",
                "1|30| -> ",     // the second is not sent
                "10|04| -> ",    // nor the first
                "011|34| -> "}); // longer than the list, but chooses none beyond
    files.Remove(name);
    name = "/p/PC_CFG.fwc";
    ExpectRows(checked, {"11|34|x: -> Line 1 of /p/PC_CFG.fwc is not well formed: x:"});
    files.Put("/p/pc_cfg.fwc", ""); // the one of the exact name
    ExpectRows(checked, {"11|34|x: -> "});
    files.Put("/p/config.fwc", "Filename: \\sub\\none.bin\n1\n1\nNumber of files: 1");
    EXPECT_EQ(Mistakes(files), "Cannot read /p/sub/none.bin: No such file or directory");
    files.Put("/p/config.fwc", "");
    EXPECT_EQ(Mistakes(files), "/p/config.fwc names no file|Number of files: '' chooses no file");
}

// Transfer type and RPC model; the first road and that of the repeat.
TEST(FirmwarePackage, Routes) {
    ExpectRows(
        [](std::string_view input) {
            constexpr std::string_view roads[] = {"none", "stream", "erase", "main", "display", "target"};
            TUpdateFile file;
            file.TransferType = ToInteger(Piece(input, 0));
            file.RPCModel = ToInteger(Piece(input, 1));
            return std::string(roads[static_cast<std::size_t>(FirstRoad(file))]) + " " +
                   std::string(roads[static_cast<std::size_t>(RepeatRoad(file))]);
        },
        {"0|2 -> erase stream", "0|0 -> stream stream", "0|-1 -> stream stream", "1|0 -> main main",
         "1|1 -> display display", "1|2 -> target none", "1|3 -> none none", "2|2 -> erase none",
         "2|0 -> stream main", "2|1 -> stream display", "2|3 -> none none", "3|0 -> none none",
         "-1|2 -> none none"});
}

} // namespace
} // namespace tidewell::test

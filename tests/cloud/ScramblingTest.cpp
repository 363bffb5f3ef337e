#include "cloud/Scrambling.h"

#include "rig/FakePorts.h"
#include "rig/PosixProcess.h"
#include "rig/Test.h"
#include "tools/Processor.h"

namespace tidewell::test {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

const char* const key = "0A12C00000000000";

TEST(Scrambling, MakesAKeyOfAnyProcessorText) {
    ExpectRows([](std::string_view text) { return MachineKey(text); },
               {" -> 0000000000000000", "0123456789ABCDEF0123 -> 0123456789ABCDEF",
                "0123456789ABCDE -> 0123456789ABCDE0", "BFEBFBFF-000906a3 -> BFEBFBFF00090630",
                "\xC4 12\xE4 3 -> 1230000000000000"});
}

// What a tool wrote, and what of it is taken as scrambled and as clear.
TEST(Scrambling, TakesOnlyWhatIsMarked) {
    ExpectRows(
        [](std::string_view output) {
            TFakeProcess process;
            process.Output = output;
            return Scramble(process, "/t", "p", key) + "|" + Unscramble(process, "/t", "p", key);
        },
        {" -> |", "\xFF\xFE garbage\n -> |", "error: out of memory\n -> |", "Result2:abc -> |",
         "Result2:,#END -> |", "Result3: -> |", "Result3:abc\n -> |", "Result3:\x1F -> |",
         "Result3:gr\xC3\xBCn -> |", "Result2:abc,#END -> abc|", "a warning\nResult2:abc,#END\n,#END -> abc|",
         "a warning\nResult3: ~\x7F -> | ~\x7F", "Result3:Result3:a,#END -> |Result3:a,#END"});
}

// The real tools.
struct TTools : testing::Test {
    std::filesystem::path Directory = PROGRAM_DIRECTORY;
    TPosixProcess Process;
};

TEST_F(TTools, GiveBackWhatTheyScrambled) {
    for (const std::string& password : std::initializer_list<std::string>{
             "tidewell", "", " ", " a  b ", "-h", "--", "\"", "'it''s' \"so\"",
             "$HOME $(id) `id`;b|c&d>e<f*?[a]{b}~", "\\\\n\\", "Result3:,#END", std::string(1000, 'y')}) {
        const std::string scrambled = Scramble(Process, Directory, password, key);
        EXPECT_THAT(scrambled, MatchesRegex("[A-Za-z0-9_-]+")) << password;
        EXPECT_EQ(Unscramble(Process, Directory, scrambled, key), password);
    }
    EXPECT_NE(Scramble(Process, Directory, "a", key), Scramble(Process, Directory, "a", key));
    for (const char* const password : {"gr\xC3\xBCn", "tab\t", "line\n", "\xFF"}) {
        const std::string scrambled = Scramble(Process, Directory, password, key);
        EXPECT_EQ(Unscramble(Process, Directory, scrambled, key), "");
        EXPECT_EQ(Process.ExitCode, 0);
    }
}

TEST_F(TTools, GiveNothingForWhatTheyCannotDo) {
    const std::string scrambled = Scramble(Process, Directory, "tidewell", key);
    std::string changed = scrambled;
    changed[scrambled.size() / 2] = changed[scrambled.size() / 2] == 'A' ? 'B' : 'A';
    for (const std::string& text : std::initializer_list<std::string>{
             changed, scrambled.substr(0, scrambled.size() - 4), scrambled + "AAAA", scrambled + "A",
             "B" + scrambled.substr(1), "", "AQ", "no text of theirs"}) {
        EXPECT_EQ(Unscramble(Process, Directory, text, key), "") << text;
        EXPECT_EQ(Process.ExitCode, 1) << text;
    }
    EXPECT_EQ(Unscramble(Process, Directory, scrambled, "0A12C00000000001"), "");
    EXPECT_EQ(Scramble(Process, Directory / "nowhere", "tidewell", key), "");
    const auto output = Process.Run(Directory / "share" / "D", {"secret", key, "more"}, "/");
    EXPECT_EQ(Process.ExitCode, 1);
    EXPECT_THAT(output.value(), testing::AllOf(HasSubstr("usage: "), testing::Not(HasSubstr("secret"))));
}

TEST(Processor, KeepsTheFieldsThatStay) {
    EXPECT_THAT(ProcessorText(), MatchesRegex("[0-9A-F]{64}"));
    ExpectRows(
        [](std::string_view cpuinfo) {
            std::istringstream stream{std::string(cpuinfo)};
            return ProcessorFields(stream);
        },
        {"no field\n:\n -> ;;;;;;;;;;;",
         "processor\t: 0\nvendor_id\t: AuthenticAMD\ncpu family\t: 25\nmodel\t\t: 33\nmodel name\t: A B\n"
         "stepping\t: 2\ncpu MHz\t\t: 2200.001\nprocessor\t: 1\nmodel\t\t: 34\n -> "
         "AuthenticAMD;25;33;A B;2;;;;;;;",
         "processor\t: 0\nBogoMIPS\t: 108.00\nCPU implementer\t: 0x41\nCPU architecture: 8\nCPU variant\t: "
         "0x0\n"
         "CPU part\t: 0xd08\nCPU revision\t: 3\n\nSerial\t\t: 10000000abcdef01\nModel\t\t: Board\n -> "
         ";;;;;0x41;8;0x0;0xd08;3;10000000abcdef01;"});
}

} // namespace
} // namespace tidewell::test

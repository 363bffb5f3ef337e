#include "sim/cloud/CloudConfig.h"

#include "rig/Test.h"

// The cloud itself is told by the journeys, which all run against it.
namespace tidewell::test {
namespace {

TEST(CloudConfig, NamesWhatItCannotUnderstand) {
    const auto read = [](std::string_view rows) {
        ReadCloudConfig(TIniFile("[User anna]\nPassword=x\n" + std::string(rows)));
        return std::string("accepted");
    };
    ExpectRows(
        read,
        {" -> accepted", "Flags=10;64\n -> : [User anna] Flags=64: not a flag from 0 to 63",
         "Devices=410000000009\n -> : [User anna] Devices=410000000009: no such device in section Devices",
         "[Devices]\n4100=x\n -> : [Devices] 4100=x: a device id has 12 digits",
         "[Service]\nTokenLifetime=soon\n -> : [Service] TokenLifetime=soon: not a number from 0 to "
         "2147483647",
         "[Faults]\nFlagCount=65\n -> : [Faults] FlagCount=65: not a number from 0 to 64",
         "[Faults]\nRefuseCode=99\n -> : [Faults] RefuseCode=99: not 0 or a code from 200",
         "[Faults]\nNoJson=perhaps\n -> [Faults] NoJson: 'perhaps' is not a valid boolean value",
         "[Faults]\nNoJsn=true\n -> : [Faults] NoJsn=true: unknown key",
         "Flag=10\n -> : [User anna] Flag=10: unknown key",
         "[User ]\nPassword=x\n -> : section [User] names no user",
         "[Users]\nbert=x\n -> : section [Users] belongs to nothing"});
    EXPECT_ANY_THROW(ReadCloudConfig(TIniFile("")));
    EXPECT_ANY_THROW(ReadCloudConfig(TIniFile("[User anna]\nFlags=10\n")));
}

} // namespace
} // namespace tidewell::test

#include "sim/cloud/SimulatedCloud.h"

#include "core/DiskFiles.h"
#include "core/IniFile.h"
#include "core/Table.h"
#include "sim/cloud/CloudConfig.h"

#include <gtest/gtest.h>

// What the scenarios, which all run against it, do not show.
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

// Method, path and body, without a login.
TEST(SimulatedCloud, RefusesWhatItDoesNotKnow) {
    TSimulatedCloud service(ReadCloudConfig(TIniFile(TDiskFiles(), EXAMPLE_CLOUD_INI)));
    ExpectRows(
        [&](std::string_view input) {
            return std::to_string(service
                                      .Handle({Piece(input, 0), "/api/v1.2" + Piece(input, 1),
                                               "Bearer made.up.token", Piece(input, 2)})
                                      .Code);
        },
        {"POST|/login|{ -> 400", "POST|/login|{\"Username\":\"service\",\"Password\":1} -> 400",
         "POST|/login|{\"Username\":\"service\",\"Password\":\"Tidewell\"} -> 401",
         "POST|/login|{\"Username\":\"nobody\",\"Password\":\"tidewell\"} -> 401", "GET|/login| -> 405",
         "POST|| -> 404", "GET|/devices/410000000001/1/Nabtouser| -> 404",
         "GET|/devices//0/Nabtouser| -> 404", "GET|/Nabtouser| -> 401", "POST|/keepAlive| -> 401",
         "POST|/logout| -> 401", "POST|/login|{\"Username\":\"service\",\"Password\":\"tidewell\"} -> 200"});
}

} // namespace
} // namespace tidewell::test

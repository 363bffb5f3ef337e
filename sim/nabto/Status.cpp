#include "sim/nabto/Status.h"

#include <array>
#include <cstddef>

namespace tidewell {

namespace {

struct TStatusRow {
    std::string_view Name;
    const char* Text;
};

// In the order of the status numbers.
constexpr std::array<TStatusRow, 27> Rows{{
    {"NABTO_OK", "Success"},
    {"NABTO_NO_PROFILE", "There is no profile for this e-mail"},
    {"NABTO_ERROR_READING_CONFIG", "The configuration could not be read"},
    {"NABTO_API_NOT_INITIALIZED", "The library has not been started"},
    {"NABTO_INVALID_SESSION", "The session is not valid"},
    {"NABTO_OPEN_CERT_OR_PK_FAILED", "The profile could not be opened"},
    {"NABTO_UNLOCK_PK_FAILED", "The profile could not be unlocked with this password"},
    {"NABTO_PORTAL_LOGIN_FAILURE", "The portal did not accept e-mail and password"},
    {"NABTO_CERT_SIGNING_ERROR", "The portal did not sign the profile"},
    {"NABTO_CERT_SAVING_FAILURE", "The profile could not be saved"},
    {"NABTO_ADDRESS_IN_USE", "The address is already in use"},
    {"NABTO_INVALID_ADDRESS", "The address is not valid"},
    {"NABTO_NO_NETWORK", "There is no network"},
    {"NABTO_CONNECT_TO_HOST_FAILED", "No connection to the device"},
    {"NABTO_STREAMING_UNSUPPORTED", "The device does not support streams"},
    {"NABTO_INVALID_STREAM", "The stream is not valid"},
    {"NABTO_DATA_PENDING", "Data has not been sent yet"},
    {"NABTO_BUFFER_FULL", "The stream takes no more data at present"},
    {"NABTO_FAILED", "Failed"},
    {"NABTO_INVALID_TUNNEL", "The tunnel is not valid"},
    {"NABTO_ILLEGAL_PARAMETER", "A parameter is not valid"},
    {"NABTO_INVALID_RESOURCE", "The address of the request is not valid"},
    {"NABTO_INVALID_STREAM_OPTION", "The stream option is not valid"},
    {"NABTO_INVALID_STREAM_OPTION_ARGUMENT", "The value of the stream option is not valid"},
    {"NABTO_ABORTED", "Aborted"},
    {"NABTO_STREAM_CLOSED", "The stream was closed"},
    {"NABTO_FAILED_WITH_JSON_MESSAGE", "Failed; the reply tells why"},
}};

} // namespace

const char* StatusText(std::uint8_t status) {
    return status < Rows.size() ? Rows[status].Text : "Unknown status";
}

std::optional<TNabtoStatus> StatusByName(std::string_view name) {
    for (std::size_t i = 0; i < Rows.size(); ++i)
        if (Rows[i].Name == name)
            return static_cast<TNabtoStatus>(i);
    return std::nullopt;
}

} // namespace tidewell

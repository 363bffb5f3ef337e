#ifndef TIDEWELL_LINK_NABTOCLIENTAPI_H
#define TIDEWELL_LINK_NABTOCLIENTAPI_H

/* What the program uses of the native library nabto_client_api. It is loaded at run time, so nothing here is
   linked; whoever writes the library defines these functions with C linkage. On 32-bit Windows they use the
   standard call convention, and their names are decorated with the size of their arguments.

   All texts are ended by a zero byte. Texts that the library gives out through an out argument are freed with
   nabtoFree; an out argument is left as it was when there is nothing to give. */

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32) && !defined(_WIN64)
#define NABTO_CALL __stdcall
#else
#define NABTO_CALL
#endif

#ifdef __cplusplus
extern "C" {
enum TNabtoStatus : uint8_t {
#else
enum TNabtoStatus {
#endif
    NABTO_OK,
    NABTO_NO_PROFILE,
    NABTO_ERROR_READING_CONFIG,
    NABTO_API_NOT_INITIALIZED,
    NABTO_INVALID_SESSION,
    NABTO_OPEN_CERT_OR_PK_FAILED,
    NABTO_UNLOCK_PK_FAILED,
    NABTO_PORTAL_LOGIN_FAILURE,
    NABTO_CERT_SIGNING_ERROR,
    NABTO_CERT_SAVING_FAILURE,
    NABTO_ADDRESS_IN_USE,
    NABTO_INVALID_ADDRESS,
    NABTO_NO_NETWORK,
    NABTO_CONNECT_TO_HOST_FAILED,
    NABTO_STREAMING_UNSUPPORTED,
    NABTO_INVALID_STREAM,
    NABTO_DATA_PENDING,
    NABTO_BUFFER_FULL,
    NABTO_FAILED,
    NABTO_INVALID_TUNNEL,
    NABTO_ILLEGAL_PARAMETER,
    NABTO_INVALID_RESOURCE,
    NABTO_INVALID_STREAM_OPTION,
    NABTO_INVALID_STREAM_OPTION_ARGUMENT,
    NABTO_ABORTED,
    NABTO_STREAM_CLOSED,
    NABTO_FAILED_WITH_JSON_MESSAGE
};

/* Readies the library, with the directory where it keeps its profiles. It may be called again. */
uint8_t NABTO_CALL nabtoStartup(const char* home);
uint8_t NABTO_CALL nabtoShutdown(void);

/* Opens a session with the profile of that e-mail; fails when there is no such profile. */
uint8_t NABTO_CALL nabtoOpenSession(void** session, const char* email, const char* password);
uint8_t NABTO_CALL nabtoCloseSession(void* session);
/* Creates the local profile of that e-mail under the home directory. */
uint8_t NABTO_CALL nabtoCreateProfile(const char* email, const char* password);

/* Installs the XML text as the interface of all devices; on failure error takes a text. */
uint8_t NABTO_CALL nabtoRpcSetDefaultInterface(void* session, const char* definition, char** error);
/* One request, "nabto://<device>/<query>?json=<text>"; response takes the JSON reply. Blocks. */
uint8_t NABTO_CALL nabtoRpcInvoke(void* session, const char* url, char** response);

uint8_t NABTO_CALL nabtoStreamOpen(void** stream, void* session, const char* device);
uint8_t NABTO_CALL nabtoStreamClose(void* stream);
/* Blocks until some bytes have come; got takes their number, at most capacity. */
uint8_t NABTO_CALL nabtoStreamReadIntoBuf(void* stream, unsigned char* buffer, size_t capacity, size_t* got);
/* NABTO_BUFFER_FULL asks for the same bytes again. */
uint8_t NABTO_CALL nabtoStreamWrite(void* stream, const char* data, size_t length);

/* Readable text of a status, never freed. */
const char* NABTO_CALL nabtoStatusStr(uint8_t status);
void NABTO_CALL nabtoFree(void* text);
/* The ids of the devices on the local network; array and texts stay with the library. */
uint8_t NABTO_CALL nabtoGetLocalDevices(char*** devices, int* count);

#ifdef __cplusplus
}
#endif

#endif

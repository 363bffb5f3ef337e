#pragma once

// The helper library, looked up by name at run time.
extern "C" {

// Hexadecimal digits that identify this machine's processor. The text stays valid while the library is
// loaded; it is empty when the machine has run out of memory.
__attribute__((visibility("default"))) const char* GetCPUIDasString();
}

// The module entry. The library has no per-process or per-thread state, so
// it accepts every notification and never refuses a load.
#include "platform/platform.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }

// SPDX-License-Identifier: MIT
// Entry point of the Windows DLL.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  // The library keeps nothing for a thread, so it need not hear of threads.
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
  return TRUE;
}

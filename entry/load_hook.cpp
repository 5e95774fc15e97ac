// What happens when the host loads the module: nothing starts, the host's common blocks are cached.
#include "entry/common_blocks.h"

#ifdef _WIN32

#include <windows.h>

namespace {
HINSTANCE moduleHandle = nullptr;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    moduleHandle = instance;
    genostat::cacheCommonBlocks();
  }
  return TRUE;
}

#else

#include <dlfcn.h>

namespace {

void* moduleHandle = nullptr;

__attribute__((constructor)) void onLoad() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<void*>(&onLoad), &info) != 0) moduleHandle = info.dli_fbase;
  genostat::cacheCommonBlocks();
}

}  // namespace

#endif

// The module's application object: the image service runs from load to unload.
#include "frame/image_service.h"

#ifdef __linux__
#include <dlfcn.h>
#include <omp.h>
#endif

namespace tintwerk {
namespace {

// Zero while stopped. The only module-level datum that is written after load.
std::uintptr_t runningToken = 0;

class CTintwerkApp {
 public:
  CTintwerkApp() { InitInstance(); }
  ~CTintwerkApp() { GdiplusShutdown(token_); }
  CTintwerkApp(const CTintwerkApp&) = delete;
  CTintwerkApp& operator=(const CTintwerkApp&) = delete;

 private:
  bool InitInstance() {
    KeepOpenMpLoaded();
    GdiplusStartup(&token_);
    return true;
  }

  // The OpenMP runtime keeps its threads for the next loop; they must not lose their code when a
  // host unloads us.
  static void KeepOpenMpLoaded() {
#ifdef __linux__
    Dl_info runtime;
    if (dladdr(reinterpret_cast<void*>(&omp_get_max_threads), &runtime) != 0)
      dlopen(runtime.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
#endif
  }

  std::uintptr_t token_ = 0;
};

const CTintwerkApp theApp;

}  // namespace

Gdiplus::Status GdiplusStartup(std::uintptr_t* token) {
  if (!token) return Gdiplus::InvalidParameter;
  runningToken = 1;
  *token = runningToken;
  return Gdiplus::Ok;
}

void GdiplusShutdown(std::uintptr_t token) {
  if (token == runningToken) runningToken = 0;
}

bool ImageServiceRuns() {
  return runningToken != 0;
}

}  // namespace tintwerk

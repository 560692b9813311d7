// The module's application object: the image service runs from load to unload.
#include "frame/image_service.h"

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
    GdiplusStartup(&token_);
    return true;
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

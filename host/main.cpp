// tintwerk: gives picture files the looks of the library.
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>
#include <vips/vips8>

#include "arguments.h"
#include "commands.h"
#include "stop.h"

namespace {

int Run(int argc, char** argv) {
  try {
    return ParseArguments(argc, argv)();
  } catch (const Refusal& refusal) {
    std::fprintf(stderr, "tintwerk: %s\n", refusal.what());
    return kRefused;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "tintwerk: out of memory\n");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tintwerk: %s\n", WordsOf(error).c_str());
  }
  return kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  if (VIPS_INIT(argv[0])) {
    std::fprintf(stderr, "tintwerk: cannot start libvips: %s\n", vips_error_buffer());
    return kFailed;
  }
  // Every picture is read once, so cached operations would only hold memory. What a decoder merely
  // warns of is not worth a line between ours; what it fails on comes back as an error.
  vips_cache_set_max(0);
  g_log_set_handler(
      "VIPS", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
  HandleStopSignals();
  std::signal(SIGXFSZ, SIG_IGN);  // a file that grows too large is a failed write like others
  int code = Run(argc, argv);
  std::cout.flush();
  if (!std::cout || std::fflush(stdout) != 0) {
    std::perror("tintwerk: cannot write to standard output");
    code = std::max(code, kFailed);
  }
  vips_shutdown();
  return StopSignal() ? 128 + StopSignal() : code;
}

// Marks what the shared library exports. Everything else in it is hidden.
#pragma once

#if defined(_WIN32)
#if defined(TINTWERK_BUILDING)
#define TINTWERK_API __declspec(dllexport)
#else
#define TINTWERK_API __declspec(dllimport)
#endif
#else
#define TINTWERK_API __attribute__((visibility("default")))
#endif

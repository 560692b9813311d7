// The command line.
#pragma once

#include <functional>

/// What the program is asked to do. Returns the exit code.
using Command = std::function<int()>;

/// Reads the command line. Prints help, the version and messages about wrong arguments itself; the
/// command then only returns the exit code.
Command ParseArguments(int argc, const char* const* argv);

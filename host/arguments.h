// The command line.
#pragma once

#include <functional>

/// What the program is asked to do; the result is its exit code.
using Command = std::function<int()>;

/// Reads the command line. Help, the version and what cannot be understood are printed here; the
/// command is then only the exit code.
Command ParseArguments(int argc, const char* const* argv);

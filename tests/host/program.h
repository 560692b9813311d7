// Running the tintwerk program.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace host_test {

namespace fs = std::filesystem;

struct Outcome {
  int code = -1;  // -1: ended by a signal
  std::string out, err;
};

// A folder of its own for each test, in which test and program work.
class HostTest : public testing::Test {
 protected:
  HostTest();
  ~HostTest() override;

  // Starts the program, or the copy of it that `program` names, without waiting for it.
  // @param line its arguments, separated by spaces; one that holds spaces stands in double quotes
  pid_t Start(const std::string& line, const std::string& program = TINTWERK_PROGRAM);
  Outcome Wait(pid_t child);
  Outcome Run(const std::string& line) { return Wait(Start(line)); }

  // Runs it and expects an exit code and what its messages say; silence if that is nothing.
  void Expect(int code, const std::string& line, const std::vector<std::string>& told = {},
              const std::string& program = TINTWERK_PROGRAM);

 private:
  fs::path folder_;
};

std::string ReadFile(const fs::path& path);
void WriteFile(const fs::path& path, const std::string& bytes);

// Names in a folder, sorted, hidden ones too: nothing temporary may be left among them.
std::vector<std::string> NamesIn(const fs::path& folder);

}  // namespace host_test

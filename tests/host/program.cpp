#include "program.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace host_test {

HostTest::HostTest() {
  // Programs that a superuser starts here heed the permissions of files, as a user's do.
  prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
  std::string name = (fs::temp_directory_path() / "tintwerk-host-").string() + std::string(6, 'X');
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  folder_ = name;
  fs::current_path(folder_);
}

HostTest::~HostTest() {
  fs::current_path("/");
  fs::remove_all(folder_);
}

pid_t HostTest::Start(const std::string& line, const std::string& program) {
  std::vector<std::string> words{program};
  std::istringstream rest(line);
  for (std::string word; rest >> std::quoted(word);) words.push_back(word);
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);

  const std::string log = folder_.string();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  constexpr int mode = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_addopen(&actions, 1, (log + ".out").c_str(), mode, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, (log + ".err").c_str(), mode, 0600);
  pid_t child = 0;
  const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::runtime_error("cannot start " + program);
  return child;
}

Outcome HostTest::Wait(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  const std::string log = folder_.string();
  const Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(log + ".out"),
                        ReadFile(log + ".err")};
  fs::remove(log + ".out");
  fs::remove(log + ".err");
  return outcome;
}

void HostTest::Expect(int code, const std::string& line, const std::vector<std::string>& told,
                      const std::string& program) {
  const Outcome outcome = Wait(Start(line, program));
  EXPECT_EQ(outcome.code, code) << line;
  for (const std::string& words : told) EXPECT_THAT(outcome.err, testing::HasSubstr(words)) << line;
  EXPECT_EQ(outcome.err.empty(), code == 0 && told.empty()) << line << ": " << outcome.err;
}

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

}  // namespace host_test

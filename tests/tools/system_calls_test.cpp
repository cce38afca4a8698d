// SPDX-License-Identifier: Apache-2.0
// What the command asks of the kernel while it is in a target's tree, enforced by the kernel
// itself.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "tools/device/device_library.h"
#include "tools/device/open_redirect.h"
#include "tools/lint/checks.h"
#include "tools/trace/countries.h"

namespace {

// Calls that take the path of a file from the process's root or working directory, and those that
// change one of the two.
constexpr unsigned kHostCalls[] = {
#ifdef SYS_open
    SYS_open,   SYS_creat,   SYS_stat,      SYS_lstat,      SYS_access, SYS_readlink,
#endif
    SYS_openat, SYS_statx,   SYS_faccessat, SYS_faccessat2, SYS_chdir,  SYS_fchdir,
    SYS_chroot, SYS_unshare, SYS_setns,     SYS_pivot_root};

constexpr sock_filter statement(int code, uint32_t k) {
  return {static_cast<uint16_t>(code), 0, 0, k};
}

constexpr sock_filter skipUnlessEqual(uint32_t k, uint8_t count) {
  return {BPF_JMP | BPF_JEQ | BPF_K, 0, count, k};
}

using Filter = std::vector<sock_filter>;

Filter filterOf(const std::vector<unsigned>& calls, uint32_t answer) {
  Filter filter = {statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const unsigned call : calls) {
    filter.push_back(skipUnlessEqual(call, 1));
    filter.push_back(statement(BPF_RET | BPF_K, answer));
  }
  return filter;
}

// fstat() is fstatat() of a descriptor and no path; so is a link read.
void forbidStatOfPaths(Filter& filter) {
  filter.push_back(skipUnlessEqual(SYS_readlinkat, 4));
  filter.push_back(statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])));
  filter.push_back(skipUnlessEqual(static_cast<uint32_t>(AT_FDCWD), 1));
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
  filter.push_back(statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
  filter.push_back(skipUnlessEqual(SYS_newfstatat, 3));
  filter.push_back(statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[3])));
  filter.push_back({BPF_JMP | BPF_JSET | BPF_K, 1, 0, AT_EMPTY_PATH});
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
}

bool install(Filter filter) {
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program = {static_cast<uint16_t>(filter.size()), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

constexpr int kNoFilter = 77;

// How a process ends that does this.
int statusOfProcess(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) _exit(work());
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

#define SKIP_WITHOUT_FILTER(status) \
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNoFilter) GTEST_SKIP() << "seccomp is refused"

int lintEveryLoad() {
  setDeviceProperties("", "");
  std::vector<LoadTrace> traces;
  for (const std::string& country : countriesToLoad({}).loads) {
    traces.push_back(LoadTracer().trace(country));
    if (!traces.back().block.has_value()) return 1;
  }
  findingsOf(traces);
  return traces.empty() ? 2 : 0;
}

TEST(SystemCalls, NoFileOfTheHostIsTouchedAndNothingIsChanged) {
  const DeviceLibrary library(LIBRARY);
  const TargetRoot root(EXAMPLES);
  const int status = statusOfProcess([&] {
    Filter filter =
        filterOf({std::begin(kHostCalls), std::end(kHostCalls)}, SECCOMP_RET_KILL_PROCESS);
    forbidStatOfPaths(filter);
    if (!install(filter)) return kNoFilter;
    const OpenRedirect redirect(root);
    return library.load(kBlockSize).size() == kBlockSize ? lintEveryLoad() : 3;
  });
  SKIP_WITHOUT_FILTER(status);
  EXPECT_EQ(status, 0) << strsignal(WTERMSIG(status));
}

TEST(SystemCalls, TheFilterOfThisTestKills) {
  for (const std::function<void()>& call : std::vector<std::function<void()>>{
           [] { access("/", R_OK); }, [] { open("/", O_RDONLY); }, [] { chdir("/"); }}) {
    const int status = statusOfProcess([&] {
      Filter filter =
          filterOf({std::begin(kHostCalls), std::end(kHostCalls)}, SECCOMP_RET_KILL_PROCESS);
      if (!install(filter)) return kNoFilter;
      call();
      return 0;
    });
    SKIP_WITHOUT_FILTER(status);
    EXPECT_TRUE(WIFSIGNALED(status));
  }
}

class RefusedCall : public testing::TestWithParam<int> {};

TEST_P(RefusedCall, IsToldInOneLine) {
  const std::string expected =
      std::string("cannot make / the root: the system call openat2 is refused: ") +
      std::strerror(GetParam());
  const int status = statusOfProcess([&] {
    const uint32_t answer = SECCOMP_RET_ERRNO | static_cast<uint32_t>(GetParam());
    if (!install(filterOf({SYS_openat2}, answer))) return kNoFilter;
    try {
      const TargetRoot root("/");
    } catch (const std::runtime_error& e) {
      std::exit(e.what() == expected ? 0 : 1);  // Also writes the counters of a coverage build.
    }
    return 2;
  });
  SKIP_WITHOUT_FILTER(status);
  EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(SystemCalls, RefusedCall, testing::Values(ENOSYS, EPERM));

}  // namespace

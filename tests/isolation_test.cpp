// A drawing in memory is read under a filter that lets the system give memory, the time and random
// numbers (for Expat's tables) and nothing else: no file, socket or process can be reached,
// whatever the drawing names.
#include <cstddef>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/documents.h"
#include "tests/support/reader.h"

constexpr long allowed[] = {SYS_mmap,          SYS_munmap,    SYS_mremap,      SYS_brk,
                            SYS_mprotect,      SYS_madvise,   SYS_futex,       SYS_gettid,
                            SYS_clock_gettime, SYS_getrandom, SYS_sigaltstack, SYS_exit_group};

// Any other call ends the process with SIGSYS.
static bool allow_memory_only() {
  std::vector<sock_filter> program = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const long call : allowed) {
    program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  }
  program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
  const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

// "exit N" or "signal N" of a process that calls body under the filter.
static std::string filtered(const std::function<int()> &body) {
  const pid_t child = fork();
  if (child == 0) syscall(SYS_exit_group, allow_memory_only() ? body() : 99);
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? "exit " + std::to_string(WEXITSTATUS(status))
                           : "signal " + std::to_string(WTERMSIG(status));
}

TEST(Isolation, ReadingFromMemoryReachesNothing) {
  EXPECT_EQ(filtered([] { return open("/dev/null", O_RDONLY); }),
            "signal " + std::to_string(SIGSYS));
  std::vector<NamedBytes> inputs = documents();
  inputs.push_back({"external things",
                    "<?xml-stylesheet type='text/css' href='/etc/passwd'?>"
                    "<!DOCTYPE svg SYSTEM 'file:///etc/passwd' [<!ENTITY e SYSTEM '/etc/passwd'>"
                    "<!ENTITY % p SYSTEM 'http://127.0.0.1/'> %p;]>"
                    "<svg xmlns:xlink='http://www.w3.org/1999/xlink'>"
                    "<style>@import 'file:///etc/passwd'; @import url(a.css); g{fill:red}</style>"
                    "<image xlink:href='http://127.0.0.1/a.png'/><g fill='url(/etc/passwd#a)'/>"
                    "<color-profile xlink:href='../a.icc'/>&e;</svg>"});
  for (const NamedBytes &input : inputs) {
    const int expected = Document(input.bytes).code != 0;
    EXPECT_EQ(filtered([&] { return Document(input.bytes).code != 0; }),
              "exit " + std::to_string(expected))
        << input.name;
  }
}

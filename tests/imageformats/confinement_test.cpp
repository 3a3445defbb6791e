// What a process can still do once it is confined. Each test confines a process of its own.
#include "imageformats/confinement.h"

#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Orv::ImageFormats;

namespace {

constexpr quint64 Gigabyte = quint64(1) << 30;
constexpr ConfinementLimits Limits{1, 4 * Gigabyte, 1000};

// Confines a child, in which `action` is done, and `preparation` before. Returns its status, as
// waitpid() gives it.
int statusOf(
    void (*action)(), void (*preparation)() = [] {})
{
    const pid_t child = fork();
    if (child == 0) {
        preparation();
        const bool isConfined = confine(Limits);
        if (isConfined)
            action();
        _exit(isConfined ? 0 : 99);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

// Ends the process with 0 if the call was refused.
void expectRefused(long result)
{
    _exit(result < 0 ? 0 : 1);
}

struct CallCase
{
    const char* name;
    void (*action)();
};

class ConfinedProcess : public testing::TestWithParam<CallCase>
{};

TEST_P(ConfinedProcess, IsRefusedWhatDecodingDoesNotNeed)
{
    EXPECT_EQ(statusOf(GetParam().action), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, ConfinedProcess,
    testing::Values(CallCase{"Open", [] { expectRefused(open("/etc/passwd", O_RDONLY)); }},
                    CallCase{"Create", [] { expectRefused(creat("/tmp/confined", 0600)); }},
                    CallCase{"Remove", [] { expectRefused(unlink("/tmp/confined")); }},
                    CallCase{"Connect", [] { expectRefused(socket(AF_UNIX, SOCK_STREAM, 0)); }},
                    CallCase{"Fork", [] { expectRefused(fork()); }},
                    CallCase{"Execute", [] { expectRefused(execl("/bin/true", "true", nullptr)); }},
                    CallCase{"Signal", [] { expectRefused(kill(getppid(), 0)); }},
                    CallCase{"Duplicate", [] { expectRefused(dup(0)); }},
                    CallCase{"RaiseTheLimit",
                             [] {
                                 const rlimit high{1000, 1000};
                                 expectRefused(setrlimit(RLIMIT_CPU, &high));
                             }}),
    TestSupport::caseName<CallCase>);

TEST(Confinement, LeavesMemoryAndOpenFiles)
{
    EXPECT_EQ(statusOf([] {
                  const std::string text(100000, 'a');
                  char byte = 0;
                  _exit(text.size() == 100000 && read(-1, &byte, 1) < 0 && errno == EBADF ? 0 : 1);
              }),
              0);
}

TEST(Confinement, EndsAProcessThatTakesTooMuchTime)
{
    const int status = statusOf([] {
        for (volatile unsigned i = 0;; i = i + 1) {
        }
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXCPU);
}

TEST(Confinement, GivesNoMoreMemoryThanItIsAllowed)
{
    const int status = statusOf([] {
        void* const memory = mmap(nullptr, 5 * Gigabyte, PROT_READ | PROT_WRITE,
                                  MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        _exit(memory == MAP_FAILED && errno == ENOMEM ? 1 : 0);
    });
    EXPECT_EQ(WEXITSTATUS(status) == 1, IsMemoryLimited);
}

// The memory for the answer exists before.
class ConfinedFile : public testing::Test
{
protected:
    void SetUp() override { file = memfd_create("answer", MFD_CLOEXEC); }
    void TearDown() override { close(file); }
    static void growTo1000() { _exit(ftruncate(file, 1000) == 0 ? 0 : 1); }
    static void growTo1001() { _exit(ftruncate(file, 1001) == 0 ? 0 : 1); }

    static int file;
};

int ConfinedFile::file = -1;

TEST_F(ConfinedFile, GrowsToItsBound)
{
    EXPECT_EQ(statusOf(&growTo1000), 0);
}

TEST_F(ConfinedFile, GrowsNotBeyondItsBound)
{
    const int status = statusOf(&growTo1001);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
}

TEST_F(ConfinedFile, KeepsALowerBound)
{
    const int status = statusOf(&growTo1000, [] {
        const rlimit low{500, 500};
        setrlimit(RLIMIT_FSIZE, &low);
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
}

} // namespace

#include "core/platform/linux/ResolvingOpening.h"

#include "core/platform/Removal.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/Removing.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/openat2.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>

namespace tidewright {

namespace {

namespace fs = std::filesystem;
using test::approvedPath;
using test::outcome;
using test::TempHome;

/// From here on this process has a kernel without openat2.
bool forgetOpenat2() {
    std::array filter{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_openat2},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | ENOSYS},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

class ResolvingOpeningTest : public testing::Test {
protected:
    ResolvingOpeningTest() {
        canary.file("folder/file", "precious");
        canary.setMode("folder/file", 0400);
        canary.setMode("folder", 0500);
        canary.snapshot();
        m_before = canary.snapshot();
    }
    ~ResolvingOpeningTest() override { EXPECT_EQ(canary.snapshot(), m_before); }

    TempHome home;
    TempHome canary;

private:
    std::string m_before;
};

TEST_F(ResolvingOpeningTest, WithoutTheCallLinksAreNotFollowedEither) {
    home.link("cache/item/link", canary.url().path());
    home.file("cache/item/folder/file");
    const auto answer = test::forkedAnswer(forgetOpenat2, [&]() -> std::string {
        if (openResolving(AT_FDCWD, "/", O_PATH, 0) || errno != ENOSYS)
            return "the call is there";
        const FileDescriptor folder(open(home.path("cache/item").path().c_str(), O_PATH));
        if (openOnSameMount(folder.get(), "link", O_RDONLY) || errno != ELOOP)
            return "it was followed";
        const ApprovedPath item = approvedPath(home, home.path("cache/item"));
        makeWritable(item);
        return outcome(removeOnce(item));
    });
    if (!answer)
        GTEST_SKIP() << "no call can be taken away here";
    EXPECT_EQ(*answer, "done");
    EXPECT_FALSE(fs::exists(home.path("cache/item").path()));
}

TEST_F(ResolvingOpeningTest, WithoutTheCallMountsAreNotEnteredEither) {
    const URL folder = home.folder("cache/item/folder");
    const URL file = home.file("cache/item/mounted file");
    for (const bool isSameDisk : {true, false}) {
        home.file("cache/item/other");
        const auto answer = test::withOwnMounts([&]() -> std::string {
            if (isSameDisk ? !test::mountAgain(canary.url(), folder) : !test::mountMemory(folder))
                return "not mounted";
            if (!test::mountAgain(canary.path("folder/file"), file))
                return "the file was not mounted";
            if (!isSameDisk)
                home.file("cache/item/folder/file", "precious");
            if (!forgetOpenat2())
                return "no call can be taken away here";
            const ApprovedPath item = approvedPath(home, home.path("cache/item"));
            makeWritable(item);
            const auto result = removeOnce(item);
            if (!isSameDisk && !fs::exists(folder.appending("file").path()))
                return "it was emptied";
            return result ? "done" : result.error().cause.path;
        });
        if (!answer)
            GTEST_SKIP() << test::mountsRefused;
        EXPECT_TRUE(*answer == folder.path() || *answer == file.path()) << *answer;
        EXPECT_FALSE(fs::exists(home.path("cache/item/other").path()));
    }
}

} // namespace

} // namespace tidewright

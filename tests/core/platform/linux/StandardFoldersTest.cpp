#include "core/platform/StandardFolders.h"

#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace tidewright {
namespace {

using test::ScopedVariable;

struct Case {
    std::optional<std::string> value;
    std::optional<std::string> expected; ///< absent: what counts without the variable
};

const std::vector<Case> cases = {
    {"/home/user", "/home/user"},
    {"/home/user/", "/home/user"},
    {"/home/./user//x/..", "/home/user"},
    {"/", "/"},
    {"/caf\xFF", "/caf\xFF"},
    {std::nullopt, std::nullopt},
    {"", std::nullopt},
    {"relative", std::nullopt},
    {"~", std::nullopt},
    {"./here", std::nullopt},
    {" /home/user", std::nullopt},
};

TEST(StandardFolders, HomeIsTheEnvironmentsElseTheUserDatabases) {
    const passwd* const entry = getpwuid(getuid());
    ASSERT_NE(entry, nullptr);
    const std::string fallback = URL(entry->pw_dir).standardized().path();
    for (const Case& each : cases) {
        const ScopedVariable home("HOME", each.value);
        EXPECT_EQ(homeDirectory().path(), each.expected.value_or(fallback))
            << each.value.value_or("not set");
    }
}

TEST(StandardFolders, TemporaryFolderIsTheEnvironmentsElseTmp) {
    for (const Case& each : cases) {
        const ScopedVariable folder("TMPDIR", each.value);
        EXPECT_EQ(temporaryDirectory().path(), each.expected.value_or("/tmp"))
            << each.value.value_or("not set");
    }
}

TEST(StandardFolders, ProgramsFilesFollowTheEnvironmentElseTheHome) {
    const URL home("/home/user");
    for (const Case& each : cases) {
        const ScopedVariable data("XDG_DATA_HOME", each.value);
        const ScopedVariable state("XDG_STATE_HOME", std::nullopt);
        EXPECT_EQ(userDataDirectory(home).path(), each.expected.value_or("/home/user/.local/share"))
            << each.value.value_or("not set");
        EXPECT_EQ(auditLogDirectory(home).path(), "/home/user/.local/state/Tidewright/Logs");
    }
}

TEST(StandardFolders, SettingsFollowTheEnvironmentElseTheHome) {
    for (const Case& each : cases) {
        const ScopedVariable settings("XDG_CONFIG_HOME", each.value);
        EXPECT_EQ(userConfigDirectory(URL("/home/user")).path(),
                  each.expected.value_or("/home/user/.config"))
            << each.value.value_or("not set");
    }
}

TEST(StandardFolders, AuditLogsFollowTheEnvironmentElseTheHome) {
    const URL home("/home/user/");
    for (const Case& each : cases) {
        const ScopedVariable state("XDG_STATE_HOME", each.value);
        const ScopedVariable data("XDG_DATA_HOME", std::nullopt);
        const URL folder(each.expected.value_or("/home/user/.local/state"));
        EXPECT_EQ(auditLogDirectory(home), folder.appending("Tidewright/Logs"))
            << each.value.value_or("not set");
        EXPECT_EQ(userDataDirectory(home).path(), "/home/user/.local/share");
    }
}

} // namespace
} // namespace tidewright

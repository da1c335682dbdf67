#include "core/platform/ResolvedLinks.h"

#include "core/platform/posix/FileDescriptor.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace tidewright {

namespace {

using test::TempHome;

/// The system's own answer; absent where it has none.
std::optional<std::string> systemsAnswer(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::optional<std::string>(real.get()) : std::nullopt;
}

std::string resolved(const URL& url) {
    const auto real = resolvedLinks(url);
    return real ? real->path() : fmt::format("error {}", real.error().code);
}

class ResolvedLinksTest : public testing::Test {
protected:
    TempHome home;
};

TEST_F(ResolvedLinksTest, EachKindOfLinkIsFollowed) {
    home.file("folder/inner/file");
    home.link("absolute", home.path("folder").path());
    home.link("relative", "folder/inner");
    home.link("folder/up", "../folder/./inner/..");
    home.link("folder/inner/top", "../..");
    home.link("chain", "second");
    home.link("second", "absolute/inner");
    home.link("to file", "folder/inner/file");
    home.link("slashes", "folder//inner///");
    home.link("root", "/");
    const struct {
        const char* path;
        const char* expected;
    } cases[] = {
        {"folder/inner/file", "folder/inner/file"},
        {"absolute", "folder"},
        {"absolute/inner/file", "folder/inner/file"},
        {"relative/file", "folder/inner/file"},
        {"folder/up/inner", "folder/inner"},
        {"folder/inner/top/absolute/inner", "folder/inner"},
        {"chain/file", "folder/inner/file"},
        {"to file", "folder/inner/file"},
        {"slashes/file", "folder/inner/file"},
        {"relative/..", "folder"}, // of where the link leads, not of where it stands
        {"relative/../up/inner/.", "folder/inner"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(resolved(home.path(path)), home.path(expected).path()) << path;
    EXPECT_EQ(resolved(home.path("root")), "/");
    EXPECT_EQ(resolved(URL(home.path("root").path() + home.path("relative").path())),
              home.path("folder/inner").path());
}

TEST_F(ResolvedLinksTest, SpellingsOfTheRoot) {
    for (const char* path : {"/", "//", "/.", "/..", "/../..", ""})
        EXPECT_EQ(resolved(URL(path)), "/") << path;
    EXPECT_EQ(resolved(URL("no-such-thing-here")), "/no-such-thing-here");
}

TEST_F(ResolvedLinksTest, WhatDoesNotExistIsTakenAsText) {
    home.folder("folder");
    home.file("file");
    home.link("link", "folder");
    home.link("dangling", "folder/missing/../gone");
    const std::string longName(5000, 'x');
    const struct {
        std::string path;
        std::string expected;
    } cases[] = {
        {"missing/a/b", "missing/a/b"},
        {"link/missing/a", "folder/missing/a"},
        {"link/missing/../a", "folder/a"},
        {"file/a", "file/a"},
        {"dangling", "folder/gone"},
        {"dangling/a", "folder/gone/a"},
        {"link/" + longName + "/a", "folder/" + longName + "/a"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(resolved(home.path(path)), home.path(expected).path()) << path;
}

TEST_F(ResolvedLinksTest, CirclesFail) {
    home.link("self", "self");
    home.link("one", "two/x");
    home.link("two", "one");
    for (const char* path : {"self", "self/a", "one", "two/a"})
        EXPECT_EQ(resolved(home.path(path)), fmt::format("error {}", ELOOP)) << path;
}

TEST_F(ResolvedLinksTest, AsManyLinksAsTheSystemFollows) {
    home.folder("0");
    for (int i = 1; i <= 41; ++i)
        home.link(std::to_string(i), std::to_string(i - 1));
    EXPECT_EQ(resolved(home.path("40")), home.path("0").path());
    EXPECT_EQ(resolved(home.path("41")), fmt::format("error {}", ELOOP));
    EXPECT_EQ(systemsAnswer(home.path("40").path()), home.path("0").path());
    EXPECT_EQ(systemsAnswer(home.path("41").path()), std::nullopt);
}

TEST_F(ResolvedLinksTest, AFolderThatMayNotBeSearchedFails) {
    home.setMode("", 0755);
    home.folder("closed/folder");
    home.link("link", "closed/folder");
    home.setMode("closed", 0644);
    const auto answer = [&] {
        return resolved(home.path("closed")) + " " + resolved(home.path("closed/folder")) + " " +
               resolved(home.path("link/a"));
    };
    EXPECT_EQ(test::asOrdinaryUser(answer),
              fmt::format("{} error {} error {}", home.path("closed").path(), EACCES, EACCES));
    home.setMode("closed", 0755);
}

TEST_F(ResolvedLinksTest, PathsOfAnyLength) {
    home.folder("target");
    std::string path = home.folder("deep").path();
    FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (path.size() <= PATH_MAX + 1000) {
        const std::string name(100, 'd');
        ASSERT_EQ(mkdirat(folder.get(), name.c_str(), 0755), 0);
        folder = FileDescriptor(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
        path += "/" + name;
    }
    ASSERT_EQ(symlinkat(home.path("target").path().c_str(), folder.get(), "link"), 0);
    EXPECT_EQ(resolved(URL(path)), path);
    EXPECT_EQ(resolved(URL(path + "/link/a")), home.path("target/a").path());

    std::string missing = home.path("missing").path();
    for (int i = 0; i < 100'000; ++i)
        missing += "/m";
    EXPECT_EQ(resolved(URL(missing)), missing);
}

/// Folders and files in which nearly everything else is a link to anything else.
class LinkForest {
public:
    LinkForest(const TempHome& home, std::uint32_t seed) : m_home(home), m_random(seed) {
        for (int i = 0; i < 12; ++i)
            m_folders.push_back(anyFolder() + "/f" + std::to_string(i));
        for (const std::string& folder : m_folders)
            home.folder(folder);
        for (int i = 0; i < 5; ++i)
            m_names.push_back(home.file(anyFolder() + "/file" + std::to_string(i)).path());
        for (int i = 0; i < 40; ++i)
            m_names.push_back(
                home.link(anyFolder() + "/l" + std::to_string(i), anyTarget()).path());
    }

    /// A path of folders and links, dots and things that are not there.
    std::string anyPath() {
        std::string path = m_names[below(m_names.size())];
        for (std::size_t i = below(6); i > 0; --i)
            path += "/" + anyComponent();
        return path;
    }

private:
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    std::string anyFolder() { return m_folders.empty() ? "f" : m_folders[below(m_folders.size())]; }

    std::string anyComponent() {
        switch (below(6)) {
        case 0:
            return "..";
        case 1:
            return below(2) == 0 ? "." : "";
        case 2:
            return "f" + std::to_string(below(12));
        case 3:
            return below(8) == 0 ? "missing" : "..";
        default:
            return "l" + std::to_string(below(40));
        }
    }

    std::string anyTarget() {
        if (below(3) == 0)
            return m_home.path(anyFolder()).path();
        std::string target = anyComponent() + "/..";
        for (std::size_t i = below(4); i > 0; --i)
            target += "/" + anyComponent();
        return below(2) == 0 ? target : "../" + anyComponent();
    }

    const TempHome& m_home;
    std::mt19937 m_random;
    std::vector<std::string> m_folders;
    std::vector<std::string> m_names;
};

TEST_F(ResolvedLinksTest, RandomForestsGiveWhatTheSystemGives) {
    std::vector<std::uint32_t> seeds{std::random_device()()};
    for (std::uint32_t seed = 1; seed <= 12; ++seed)
        seeds.push_back(seed);
    int answers = 0;
    for (const std::uint32_t seed : seeds) {
        SCOPED_TRACE(fmt::format("the seed is {}", seed));
        const TempHome place(TempHome::Place::memory);
        LinkForest forest(place, seed);
        for (int i = 0; i < 2000; ++i) {
            const std::string path = forest.anyPath();
            if (const auto expected = systemsAnswer(path)) {
                ++answers;
                EXPECT_EQ(resolved(URL(path)), *expected) << path;
            } else if (errno == ELOOP) {
                EXPECT_EQ(resolved(URL(path)), fmt::format("error {}", ELOOP)) << path;
            }
        }
    }
    EXPECT_GT(answers, 2000); // otherwise the forests are too thin to show anything
}

} // namespace

} // namespace tidewright

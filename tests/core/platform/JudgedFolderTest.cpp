#include "core/platform/JudgedFolder.h"

#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>

namespace tidewright {

namespace {

using test::TempHome;
using Hold = JudgedFolder::Hold;
using Judged = std::shared_ptr<const JudgedFolder>;

constexpr std::array bothHolds{Hold::open, Hold::byIdentity};

FileIdentity identityAt(const URL& url) {
    const auto info = fileInfo(url, Links::dontFollow);
    EXPECT_TRUE(info) << url.path();
    return info ? info->identity() : FileIdentity();
}

std::vector<FileIdentity> lineageByPath(URL url) {
    std::vector<FileIdentity> lineage{identityAt(url)};
    while (url != URL("/")) {
        url = url.deletingLastPathComponent();
        lineage.push_back(identityAt(url));
    }
    return lineage;
}

/// The number of the error, 0 where there is none.
int errorOf(const auto& result) { return result ? 0 : result.error().code; }

void move(const URL& from, const URL& to) {
    EXPECT_EQ(rename(from.path().c_str(), to.path().c_str()), 0) << from.path();
}

void removeFolder(const URL& url) { EXPECT_EQ(rmdir(url.path().c_str()), 0) << url.path(); }

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/dev/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

class JudgedFolderTest : public testing::Test {
protected:
    Judged judged(const URL& url, Hold hold) const {
        auto folder = JudgedFolder::open(url, hold);
        EXPECT_TRUE(folder) << url.path();
        return folder.value_or(nullptr);
    }

    TempHome home;
};

TEST_F(JudgedFolderTest, LineageLeadsFromTheFolderToTheRoot) {
    const URL url = home.folder("a/b/c");
    for (const Hold hold : bothHolds) {
        const Judged folder = judged(url, hold);
        EXPECT_EQ(folder->path(), url);
        EXPECT_EQ(folder->identity(), identityAt(url));
        EXPECT_EQ(folder->lineage(), lineageByPath(url));
        EXPECT_EQ(judged(URL("/"), hold)->lineage(), lineageByPath(URL("/")));
    }
}

TEST_F(JudgedFolderTest, OnlyPathsOfFoldersWithoutLinksAreTaken) {
    home.folder("folder/inner");
    home.file("file");
    home.link("link", "folder");
    for (const Hold hold : bothHolds) {
        EXPECT_EQ(errorOf(JudgedFolder::open(home.path("missing"), hold)), ENOENT);
        EXPECT_EQ(errorOf(JudgedFolder::open(home.path("file"), hold)), ENOTDIR);
        EXPECT_EQ(errorOf(JudgedFolder::open(home.path("file/inner"), hold)), ENOTDIR);
        for (const char* path : {"link", "link/inner", "link/"}) {
            const int error =
                errorOf(JudgedFolder::open(URL(home.url().path() + "/" + path), hold));
            EXPECT_TRUE(error == ELOOP || error == ENOTDIR) << path << ": " << error;
        }
    }
}

TEST_F(JudgedFolderTest, OnlyThoseHeldOpenTakeADescriptor) {
    const URL url = home.folder("folder");
    const std::size_t before = openDescriptors();
    const Judged byIdentity = judged(url, Hold::byIdentity);
    EXPECT_EQ(openDescriptors(), before);
    {
        const Judged open = judged(url, Hold::open);
        const Judged shared = open; // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    EXPECT_EQ(errorOf(byIdentity->reopen()), 0);
    EXPECT_EQ(errorOf(byIdentity->entry("x")), 0);
    EXPECT_EQ(errorOf(JudgedFolder::open(home.path("missing"), Hold::open)), ENOENT);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(JudgedFolderTest, EntriesAreSeenAsTheyStand) {
    const URL url = home.folder("folder");
    home.file("folder/file");
    home.link("folder/link", "file");
    home.link("folder/dangling", "nowhere");
    home.file("folder/\xff\n");
    for (const Hold hold : bothHolds) {
        const Judged folder = judged(url, hold);
        for (const char* name : {"file", "link", "dangling", "\xff\n"})
            EXPECT_EQ(folder->entry(name).value(), identityAt(url.appending(name))) << name;
        EXPECT_NE(folder->entry("link").value(), folder->entry("file").value());
        for (const std::string& name : {std::string("missing"), std::string(5000, 'x')})
            EXPECT_EQ(folder->entry(name).value(), std::nullopt) << name;
    }
}

TEST_F(JudgedFolderTest, EntriesOfAFolderThatIsNoLongerThere) {
    const URL url = home.folder("folder");
    home.file("folder/file");
    const Judged open = judged(url, Hold::open);
    const Judged byIdentity = judged(url, Hold::byIdentity);
    move(url, home.path("elsewhere"));
    home.file("folder/file");
    // The open one is asked itself; the other may only be asked where it is found again.
    EXPECT_EQ(open->entry("file").value(), identityAt(home.path("elsewhere/file")));
    EXPECT_EQ(errorOf(byIdentity->entry("file")), ESTALE);
}

TEST_F(JudgedFolderTest, ReopenedWhereItStillStands) {
    const URL url = home.folder("a/b");
    for (const Hold hold : bothHolds) {
        const Judged folder = judged(url, hold);
        home.file("a/b/something new");
        const auto again = folder->reopen();
        ASSERT_TRUE(again);
        struct stat status = {};
        EXPECT_EQ(fstatat(again->get(), "something new", &status, 0), 0);
        move(home.path("a"), home.path("x"));
        EXPECT_NE(errorOf(folder->reopen()), 0);
        move(home.path("x"), home.path("a"));
        EXPECT_EQ(errorOf(folder->reopen()), 0);
    }
}

struct Change {
    const char* description;
    void (*make)(const TempHome& home); ///< to the folder a/b of the home
    int whenOpen;
    int byIdentity;
};

const Change changes[] = {
    {"moved away", [](const TempHome& home) { move(home.path("a/b"), home.path("x")); }, ESTALE,
     ENOENT},
    {"moved away, a folder in its place",
     [](const TempHome& home) {
         move(home.path("a/b"), home.path("x"));
         home.folder("a/b");
     },
     ESTALE, ESTALE},
    {"moved away, a file in its place",
     [](const TempHome& home) {
         move(home.path("a/b"), home.path("x"));
         home.file("a/b");
     },
     ESTALE, ESTALE},
    {"moved away, a link to it in its place",
     [](const TempHome& home) {
         move(home.path("a/b"), home.path("x"));
         home.link("a/b", "../x");
     },
     ESTALE, ESTALE},
    {"moved away, a dangling link in its place",
     [](const TempHome& home) {
         move(home.path("a/b"), home.path("x"));
         home.link("a/b", "nowhere");
     },
     ESTALE, ESTALE},
    {"the folder above moved, a link to it in its place",
     [](const TempHome& home) {
         move(home.path("a"), home.path("x"));
         home.link("a", "x");
     },
     ESTALE, ESTALE},
    {"the folder above moved, a link to the root in its place",
     [](const TempHome& home) {
         move(home.path("a"), home.path("x"));
         home.link("a", "/");
     },
     ESTALE, ESTALE},
    {"the folder above moved", [](const TempHome& home) { move(home.path("a"), home.path("x")); },
     ESTALE, ENOENT},
    {"removed", [](const TempHome& home) { removeFolder(home.path("a/b")); }, ENOENT, ENOENT},
    {"removed with the folder above",
     [](const TempHome& home) {
         removeFolder(home.path("a/b"));
         removeFolder(home.path("a"));
     },
     ENOENT, ENOENT},
    {"removed, a link in the place of the folder above",
     [](const TempHome& home) {
         removeFolder(home.path("a/b"));
         removeFolder(home.path("a"));
         home.folder("x/b");
         home.link("a", "x");
     },
     ENOENT, ESTALE},
};

TEST_F(JudgedFolderTest, ReopeningFindsEveryChange) {
    for (const auto& [description, make, whenOpen, byIdentity] : changes) {
        for (const Hold hold : bothHolds) {
            const TempHome place;
            const Judged folder = judged(place.folder("a/b"), hold);
            make(place);
            EXPECT_EQ(errorOf(folder->reopen()), hold == Hold::open ? whenOpen : byIdentity)
                << description << (hold == Hold::open ? ", open" : ", by identity");
        }
    }
}

// The file system may give the new folder the number of the old one, which only a folder that is
// held open keeps for itself.
TEST_F(JudgedFolderTest, RemovedAndMadeAnew) {
    for (int i = 0; i < 20; ++i) {
        const URL url = home.folder("folder");
        const Judged open = judged(url, Hold::open);
        removeFolder(url);
        home.folder("folder");
        EXPECT_NE(identityAt(url), open->identity());
        EXPECT_EQ(errorOf(open->reopen()), ENOENT);
        EXPECT_EQ(open->entry("x").value(), std::nullopt);

        const Judged byIdentity = judged(url, Hold::byIdentity);
        removeFolder(url);
        home.folder("folder");
        const bool isReused = identityAt(url) == byIdentity->identity();
        EXPECT_EQ(errorOf(byIdentity->reopen()), isReused ? 0 : ESTALE);
        removeFolder(url);
    }
}

TEST_F(JudgedFolderTest, AClosedFolderAboveIsNotTakenForAChange) {
    home.setMode("", 0755);
    const URL url = home.folder("above/folder");
    home.setMode("above", 0755);
    const Judged open = judged(url, Hold::open);
    const Judged byIdentity = judged(url, Hold::byIdentity);
    home.setMode("above", 0);
    const auto answer = [&] {
        return fmt::format("{} {} {}", errorOf(open->reopen()), errorOf(byIdentity->reopen()),
                           errorOf(JudgedFolder::open(url, Hold::open)));
    };
    EXPECT_EQ(test::asOrdinaryUser(answer), fmt::format("{} {} {}", EACCES, EACCES, EACCES));
    home.setMode("above", 0755);
}

TEST_F(JudgedFolderTest, DeeperThanTheLongestPath) {
    std::string path = home.folder("deep").path();
    FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    std::size_t levels = 0;
    while (path.size() <= PATH_MAX + 1000) {
        ASSERT_EQ(mkdirat(folder.get(), "level", 0755), 0);
        folder = FileDescriptor(openat(folder.get(), "level", O_RDONLY | O_DIRECTORY));
        path += "/level";
        ++levels;
    }
    for (const Hold hold : bothHolds) {
        const Judged judgedFolder = judged(URL(path), hold);
        EXPECT_EQ(judgedFolder->lineage().size(), levels + lineageByPath(home.path("deep")).size());
        EXPECT_EQ(judgedFolder->lineage().back(), identityAt(URL("/")));
        EXPECT_EQ(errorOf(judgedFolder->reopen()), 0);
        EXPECT_EQ(judgedFolder->entry("x").value(), std::nullopt);
    }
    ASSERT_EQ(unlinkat(folder.get(), "../level", AT_REMOVEDIR), 0);
    EXPECT_EQ(errorOf(JudgedFolder::open(URL(path), Hold::open)), ENOENT);
}

TEST_F(JudgedFolderTest, LineageGoesByWhatIsMounted) {
    const URL secret = home.folder("secret");
    home.folder("secret/inner");
    const URL shown = home.folder("open/shown");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountAgain(secret, shown))
            return "not mounted";
        std::vector<FileIdentity> expected{identityAt(secret.appending("inner")),
                                           identityAt(secret)};
        const auto above = lineageByPath(home.path("open"));
        expected.insert(expected.end(), above.begin(), above.end());
        const auto folder = JudgedFolder::open(shown.appending("inner"), Hold::open);
        return folder && (*folder)->lineage() == expected ? "as it lies" : "something else";
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "as it lies");
}

TEST_F(JudgedFolderTest, AFolderMountedInsideItselfIsNotTheRoot) {
    const URL outer = home.folder("above/outer");
    const URL inner = home.folder("above/outer/inner");
    home.folder("above/outer/folder");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountAgain(outer, inner))
            return "not mounted";
        const URL url = inner.appending("folder");
        const auto folder = JudgedFolder::open(url, Hold::open);
        const bool isWhole = folder && (*folder)->lineage() == lineageByPath(url);
        return isWhole && identityAt(inner) == identityAt(outer) ? "whole" : "cut off";
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "whole");
}

} // namespace

} // namespace tidewright

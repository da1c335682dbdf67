// The Trash of the freedesktop.org Trash specification, with items put back by what their info
// files say.
#include "core/platform/Trash.h"

#include "core/cleaning/PathPolicy.h"
#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/TreeSize.h"
#include "core/support/ChildTask.h"
#include "core/support/LocalTime.h"
#include "core/support/Text.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <set>

namespace tidewright {
namespace {

namespace fs = std::filesystem;

using test::asOrdinaryUser;
using test::mountsRefused;
using test::TempHome;
using test::withOwnMounts;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = FileActionError::Kind;

constexpr Int64 megabyte = 1'000'000;
constexpr uid_t somebodyElse = 12345;

std::string contentsOf(const URL& url) { return readFile(url, megabyte).value_or("unreadable"); }

bool isThere(const URL& url) { return fileInfo(url, Links::dontFollow).has_value(); }

/// The names in a folder, sorted; none where there is no such folder.
std::vector<std::string> namesIn(const URL& folder) {
    std::vector<std::string> names;
    for (const auto& entry : readDirectory(folder).value_or(std::vector<DirectoryEntry>{}))
        names.push_back(entry.name);
    std::ranges::sort(names);
    return names;
}

std::size_t openDescriptors() { return namesIn(URL("/dev/fd")).size(); }

/// What a tree holds, without what a move may change: the times of change and of access.
std::string treeText(const URL& root) {
    std::vector<fs::path> paths{root.path()};
    if (fs::is_directory(fs::symlink_status(root.path())))
        for (const auto& entry : fs::recursive_directory_iterator(root.path()))
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::string text;
    for (const fs::path& path : paths) {
        struct stat status = {};
        lstat(path.c_str(), &status);
        text += fmt::format("{} {:o} {} {} {}.{} ", path.string(), status.st_mode, status.st_ino,
                            status.st_nlink, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
        if (S_ISLNK(status.st_mode))
            text += fs::read_symlink(path).string();
        if (S_ISREG(status.st_mode))
            text += contentsOf(URL(path.string()));
        text += "\n";
    }
    return text;
}

std::string decoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string fieldOf(const std::string& info, const std::string& key) {
    for (const std::string& line : nonEmptyLines(info))
        if (line.starts_with(key + "="))
            return line.substr(key.size() + 1);
    return "no " + key;
}

/// A trash folder as another program sees it.
struct Trash {
    URL url;
    URL top; ///< what relative paths are relative to

    URL file(const std::string& name) const { return url.appending("files/" + name); }
    URL infoFile(const std::string& name) const {
        return url.appending("info/" + name + ".trashinfo");
    }
    std::string info(const std::string& name) const { return contentsOf(infoFile(name)); }
    std::string writtenPath(const std::string& name) const { return fieldOf(info(name), "Path"); }

    /// The names of what has both its file and its info file; "half: name" for anything else.
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        const auto files = namesIn(url.appending("files"));
        const auto infos = namesIn(url.appending("info"));
        for (const std::string& name : files)
            result.push_back(isThere(infoFile(name)) ? name : "half: " + name);
        for (const std::string& name : infos)
            if (!isThere(file(name.substr(0, name.rfind(".trashinfo")))))
                result.push_back("half: " + name);
        return result;
    }

    /// Puts an item back with the help of its info file alone, and returns where.
    std::string restore(const std::string& name) const {
        const std::string path = decoded(writtenPath(name));
        const URL place = path.starts_with('/') ? URL(path) : top.appending(path);
        if (isThere(place) || std::rename(file(name).path().c_str(), place.path().c_str()) != 0)
            return "can't restore " + name + " to " + place.path();
        unlink(infoFile(name).path().c_str());
        return place.path();
    }
};

/// Makes renaming without replacing impossible, as some file systems do, for what comes after.
bool forbidRenamingFlags() {
    constexpr auto call = static_cast<std::uint32_t>(offsetof(seccomp_data, nr));
    constexpr auto flags = static_cast<std::uint32_t>(offsetof(seccomp_data, args[4]));
    std::array<sock_filter, 6> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, call),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags), // the lower half, on a little-endian machine
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, 0, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

class TrashTest : public testing::Test {
protected:
    explicit TrashTest(TempHome::Place place = TempHome::Place::disk) : home(place) {
        setenv("HOME", home.url().path().c_str(), 1);
        unsetenv("XDG_DATA_HOME");
    }
    ~TrashTest() override { EXPECT_EQ(openDescriptors(), m_before); }

    ApprovedPath approved(const URL& url) const {
        auto result = policy().validate(url, false);
        if (!result) {
            ADD_FAILURE() << result.error().errorDescription();
            std::abort();
        }
        return *result;
    }

    /// Empty, or the sentence that says why not.
    std::string trashed(const URL& url) const {
        const auto result = moveToTrash(approved(url));
        return result ? "" : result.error().errorDescription();
    }

    std::string refusal(const URL& url, const std::string& reason) const {
        return url.path() + " can't be moved to the Trash: " + reason + ". It stays where it is.";
    }

    TempHome home;
    Trash trash{home.path(".local/share/Trash"), home.url()};

private:
    PathPolicy policy() const { return PathPolicy(home.url(), home.path("tmp"), {}, {}); }

    std::size_t m_before = openDescriptors();
};

TEST_F(TrashTest, WhatIsTrashedComesBackAsItWas) {
    struct Case {
        const char* name;
        std::function<void(const URL&)> arrange;
    };
    home.file("outside/canary", "untouched");
    home.file("outside/deep/canary", "untouched");
    const std::array cases{
        Case{"file", [&](const URL&) { home.file("place/item", "contents"); }},
        Case{"empty folder", [&](const URL&) { home.folder("place/item"); }},
        Case{"folder",
             [&](const URL&) {
                 home.file("place/item/a", "a");
                 home.file("place/item/deep/er/b", "b");
                 home.link("place/item/out", "../../outside");
                 home.setMode("place/item/a", 0);
             }},
        Case{"link to a file", [&](const URL&) { home.link("place/item", "../outside/canary"); }},
        Case{"link to a folder", [&](const URL&) { home.link("place/item", "../outside"); }},
        Case{"absolute link",
             [&](const URL&) { home.link("place/item", home.path("outside").path()); }},
        Case{"dangling link", [&](const URL&) { home.link("place/item", "nowhere"); }},
        Case{"pipe",
             [&](const URL& item) {
                 home.folder("place");
                 mkfifo(item.path().c_str(), 0644);
             }},
    };
    const std::string outside = treeText(home.path("outside"));
    const URL item = home.path("place/item");
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        each.arrange(item);
        const std::string before = treeText(item);

        EXPECT_EQ(trashed(item), "");
        EXPECT_FALSE(isThere(item));
        EXPECT_THAT(trash.names(), ElementsAre("item"));
        EXPECT_EQ(trash.restore("item"), item.path());
        EXPECT_EQ(treeText(item), before);
        EXPECT_THAT(trash.names(), IsEmpty());
        EXPECT_EQ(treeText(home.path("outside")), outside);
        fs::remove_all(item.path());
    }
}

TEST_F(TrashTest, InfoFileSaysWhereAndWhen) {
    const URL item = home.file("a folder/100% \xC3\xA9~-_.+&=\n\xFF.txt", "x");
    const std::string from = localTimeText(currentDate());
    ASSERT_EQ(trashed(item), "");
    const std::string until = localTimeText(currentDate());

    const std::string info = trash.info(item.lastPathComponent());
    const std::string date = fieldOf(info, "DeletionDate");
    EXPECT_EQ(info, "[Trash Info]\nPath=" + home.url().path() +
                        "/a%20folder/100%25%20%C3%A9~-_.%2B%26%3D%0A%FF.txt\nDeletionDate=" + date +
                        "\n");
    EXPECT_LE(from, date);
    EXPECT_LE(date, until);
}

TEST_F(TrashTest, IsForItsUserAlone) {
    home.folder(".local");
    ASSERT_EQ(trashed(home.file("item")), "");
    const auto modeOf = [](const URL& url) {
        struct stat status = {};
        stat(url.path().c_str(), &status);
        return status.st_mode & 07777U;
    };
    EXPECT_EQ(modeOf(home.path(".local/share")), 0700U);
    for (const char* folder : {"", "files", "info"})
        EXPECT_EQ(modeOf(trash.url.appending(folder)), 0700U) << folder;
    EXPECT_EQ(modeOf(trash.infoFile("item")), 0600U);
}

TEST_F(TrashTest, StandsWhereTheEnvironmentSays) {
    setenv("XDG_DATA_HOME", home.path("my data").path().c_str(), 1);
    ASSERT_EQ(trashed(home.file("item")), "");
    EXPECT_THAT(Trash(home.path("my data/Trash"), home.url()).names(), ElementsAre("item"));
    EXPECT_FALSE(isThere(home.path(".local")));
}

TEST_F(TrashTest, OfTheHomeMayBeReachedThroughLinks) {
    home.folder("elsewhere/Trash folder");
    home.link("elsewhere/Trash", "Trash folder");
    home.link(".local/share", "../elsewhere");
    const URL item = home.file("item", "x");
    ASSERT_EQ(trashed(item), "");
    EXPECT_THAT(namesIn(home.path("elsewhere/Trash folder/files")), ElementsAre("item"));
    EXPECT_EQ(trash.restore("item"), item.path());
}

TEST_F(TrashTest, PathIsTheRealOne) {
    home.file("real/folder/item", "x");
    home.link("short cut", "real/folder");
    ASSERT_EQ(trashed(home.path("short cut/item")), "");
    EXPECT_EQ(trash.restore("item"), home.path("real/folder/item").path());
}

TEST_F(TrashTest, NamesOfAllKindsComeBack) {
    std::string accents;
    while (accents.size() < 254)
        accents += "\xC3\xA9";
    std::string signs = "x";
    while (signs.size() < 253)
        signs += "\xE2\x82\xAC";
    const std::vector<std::string> names{
        "two words",
        " ",
        "100%",
        "%41%2F",
        "line\nbreak\r",
        "back\\slash",
        "\xFF\xFE\x80",
        "\xE5\x90\x8D\xE5\x89\x8D",
        ".hidden",
        "..two dots",
        "a.b.c",
        "ends.",
        "-rf",
        "*?[x]",
        "x.trashinfo",
        "Path=/etc",
        std::string(255, 'n'),
        std::string(245, 'n') + ".extension",
        "n." + std::string(253, 'e'),
        accents,
        accents + "n",
        signs,
        std::string(255, '\x80'),
        std::string(251, 'n') + ".txt",
    };
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const URL item = home.file("place/" + name, "contents of " + name);
        const URL folder = home.file("place 2/" + name + "/inside").deletingLastPathComponent();
        EXPECT_EQ(trashed(item), "");
        EXPECT_EQ(trashed(folder), ""); // of the same name
        const auto trashedNames = trash.names();
        EXPECT_EQ(trashedNames.size(), 2U);
        std::set<std::string> places;
        for (const std::string& trashedName : trashedNames) {
            EXPECT_TRUE(isUTF8(trashedName) || !isUTF8(name)) << trashedName;
            places.insert(trash.restore(trashedName));
        }
        EXPECT_EQ(places, (std::set<std::string>{item.path(), folder.path()}));
        EXPECT_EQ(contentsOf(item), "contents of " + name);
    }
}

TEST_F(TrashTest, ShortenedNameKeepsItsExtension) {
    ASSERT_EQ(trashed(home.file("a/" + std::string(251, 'n') + ".txt")), "");
    ASSERT_EQ(trashed(home.file("b/" + std::string(251, 'n') + ".txt")), "");
    EXPECT_THAT(trash.names(), UnorderedElementsAre(std::string(241, 'n') + ".txt",
                                                    std::string(239, 'n') + " 2.txt"));
}

TEST_F(TrashTest, ItemsOfOneNameStandBesideEachOther) {
    for (const std::string folder : {"a", "b", "c"})
        ASSERT_EQ(trashed(home.file(folder + "/notes.txt", folder)), "");
    ASSERT_THAT(trash.names(), ElementsAre("notes 2.txt", "notes 3.txt", "notes.txt"));
    for (const std::string name : {"notes.txt", "notes 2.txt", "notes 3.txt"})
        trash.restore(name);
    for (const std::string folder : {"a", "b", "c"})
        EXPECT_EQ(contentsOf(home.path(folder + "/notes.txt")), folder);
}

TEST_F(TrashTest, WhatIsInTheTrashIsNeverReplaced) {
    const std::string place = ".local/share/Trash/";
    home.file(place + "info/item.trashinfo", "of a lost file");
    home.file(place + "files/item 2", "without an info file");
    home.folder(place + "files/item 3");
    home.link(place + "files/item 4", "nowhere");
    home.link(place + "info/item 5.trashinfo", "nowhere");
    ASSERT_EQ(trashed(home.file("item", "x")), "");

    EXPECT_EQ(contentsOf(trash.infoFile("item")), "of a lost file");
    EXPECT_EQ(contentsOf(trash.file("item 2")), "without an info file");
    EXPECT_EQ(contentsOf(trash.file("item 6")), "x");
    EXPECT_THAT(namesIn(trash.url.appending("info")),
                ElementsAre("item 5.trashinfo", "item 6.trashinfo", "item.trashinfo"));
    EXPECT_EQ(trash.restore("item 6"), home.path("item").path());
}

TEST_F(TrashTest, NothingIsReplacedWhereTheFileSystemCannotRefuse) {
    home.file(".local/share/Trash/files/item", "without an info file");
    home.folder(".local/share/Trash/files/folder");
    const URL item = home.file("item", "x");
    const URL folder = home.folder("folder");
    const auto answer = test::forkedAnswer(forbidRenamingFlags, [&] {
        if (renameat2(AT_FDCWD, "/nowhere", AT_FDCWD, "/nowhere", RENAME_NOREPLACE) == 0 ||
            errno != EINVAL)
            return std::string("the filter does not work");
        std::string said = trashed(item);
        said += trashed(folder);
        return said + trashed(home.path(".local"));
    });
    ASSERT_TRUE(answer);
    EXPECT_EQ(*answer, refusal(home.path(".local"), "the Trash itself lies in it"));
    EXPECT_EQ(contentsOf(trash.file("item")), "without an info file");
    EXPECT_THAT(trash.names(), ElementsAre("half: folder", "folder 2", "half: item", "item 2"));
    EXPECT_EQ(trash.restore("item 2"), item.path());
}

TEST_F(TrashTest, TrashItselfIsNotTrashed) {
    home.file("place/first", "x");
    ASSERT_EQ(trashed(home.path("place/first")), "");
    const std::string before = treeText(home.path(".local"));
    for (const char* place : {".local", ".local/share", ".local/share/Trash",
                              ".local/share/Trash/files", ".local/share/Trash/info"}) {
        const URL url = home.path(place);
        EXPECT_EQ(trashed(url), refusal(url, "the Trash itself lies in it"));
    }
    EXPECT_THAT(trash.names(), ElementsAre("first"));
    EXPECT_EQ(trash.restore("first"), home.path("place/first").path());
}

TEST_F(TrashTest, WhatIsNotThereCannotBeTrashed) {
    const auto missing = moveToTrash(approved(home.path("missing")));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(),
              (FileActionError{Kind::system,
                               {ENOENT, "move to the Trash", home.path("missing").path()}}));

    const ApprovedPath gone = approved(home.file("gone"));
    unlink(home.path("gone").path().c_str());
    const auto result = moveToTrash(gone);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, Kind::system);
    EXPECT_EQ(result.error().cause.code, ENOENT);

    const auto without = moveToTrash(approved(home.path("no folder/item")));
    ASSERT_FALSE(without);
    EXPECT_EQ(without.error().cause.code, ENOENT);
    EXPECT_FALSE(isThere(trash.url));
}

TEST_F(TrashTest, WhatWasReplacedSinceIsLeftAlone) {
    struct Case {
        const char* name;
        std::function<void()> replace;
    };
    const std::array cases{
        Case{"item by a file",
             [&] {
                 rename(home.path("place/item").path().c_str(), home.path("kept").path().c_str());
                 home.file("place/item", "new");
             }},
        Case{"item by a link",
             [&] {
                 rename(home.path("place/item").path().c_str(), home.path("kept").path().c_str());
                 home.link("place/item", "../outside");
             }},
        Case{"folder by another",
             [&] {
                 rename(home.path("place").path().c_str(), home.path("kept").path().c_str());
                 home.file("place/item", "new");
             }},
        Case{"folder by a link to it",
             [&] {
                 rename(home.path("place").path().c_str(), home.path("kept").path().c_str());
                 home.link("place", "kept");
             }},
        Case{"folder by a link",
             [&] {
                 rename(home.path("place").path().c_str(), home.path("kept").path().c_str());
                 home.link("place", "outside");
             }},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        home.file("place/item", "x");
        home.file("outside/item", "untouched");
        const ApprovedPath item = approved(home.path("place/item"));
        each.replace();
        const std::string before = treeText(home.url());
        const auto result = moveToTrash(item);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, Kind::replaced);
        EXPECT_EQ(treeText(home.url()), before);
        for (const char* name : {"place", "kept", "outside"})
            fs::remove_all(home.path(name).path());
    }
}

/// In memory, for what is done very often.
class TrashUnderLoad : public TrashTest {
protected:
    TrashUnderLoad() : TrashTest(TempHome::Place::memory) {}
};

TEST_F(TrashUnderLoad, IntruderInTheLastMomentGoesBackToItsPlace) {
    const auto exchange = [&] {
        return renameat2(AT_FDCWD, home.path("place/item").path().c_str(), AT_FDCWD,
                         home.path("place/intruder").path().c_str(), RENAME_EXCHANGE);
    };
    int moved = 0;
    int refused = 0;
    for (int round = 0; round < 300; ++round) {
        home.file("place/item", "item");
        home.file("place/intruder", "intruder");
        const ApprovedPath item = approved(home.path("place/item"));
        std::atomic<bool> done = false;
        Result<void, FileActionError> result;
        {
            ChildTask<int> attack([&] {
                while (!done)
                    exchange();
                return 0;
            });
            result = moveToTrash(item);
            done = true;
        }
        const auto names = trash.names();
        if (result) {
            ++moved;
            ASSERT_THAT(names, ElementsAre("item"));
            ASSERT_EQ(contentsOf(trash.file("item")), "item");
        } else {
            ++refused;
            ASSERT_THAT(names, IsEmpty()) << result.error().errorDescription();
        }
        // Whatever came of it, nothing is lost: one of them in the Trash, or none.
        EXPECT_EQ(namesIn(home.path("place")).size() + names.size(), 2U);
        fs::remove_all(home.path("place").path());
        fs::remove_all(trash.url.path());
    }
    EXPECT_EQ(moved + refused, 300);
}

TEST_F(TrashUnderLoad, ManyOfOneNameAtOnceByThreads) {
    constexpr int threads = 4;
    constexpr int items = 50;
    std::vector<ApprovedPath> all;
    for (int i = 0; i < threads * items; ++i)
        all.push_back(approved(home.file(fmt::format("{}/cache/file", i), fmt::format("{}", i))
                                   .deletingLastPathComponent()));
    std::atomic<std::size_t> next = 0;
    {
        const auto work = [&] {
            for (std::size_t i = next++; i < all.size(); i = next++)
                EXPECT_TRUE(moveToTrash(all[i]).has_value());
            return 0;
        };
        std::vector<std::unique_ptr<ChildTask<int>>> tasks;
        for (int i = 0; i < threads; ++i)
            tasks.push_back(std::make_unique<ChildTask<int>>(work));
    }
    const auto sizes = nonEmptyLines(contentsOf(trash.url.appending("directorysizes")));
    EXPECT_EQ(sizes.size(), all.size());
    const auto names = trash.names();
    EXPECT_EQ(names.size(), all.size());
    for (const std::string& name : names)
        trash.restore(name);
    for (int i = 0; i < threads * items; ++i)
        EXPECT_EQ(contentsOf(home.path(fmt::format("{}/cache/file", i))), fmt::format("{}", i));
    EXPECT_THAT(namesIn(trash.url), ElementsAre("directorysizes", "files", "info"));
}

TEST_F(TrashUnderLoad, ManyOfOneNameAtOnceByProcesses) {
    constexpr int processes = 4;
    constexpr int items = 50;
    for (int i = 0; i < processes * items; ++i)
        home.file(fmt::format("{}/cache/file", i), fmt::format("{}", i));
    std::vector<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        children.push_back(fork());
        if (children.back() != 0)
            continue;
        bool good = true;
        for (int i = process; i < processes * items; i += processes)
            good = trashed(home.path(fmt::format("{}/cache", i))).empty() && good;
        _exit(good ? 0 : 1);
    }
    const auto checkSizes = [&] {
        const auto sizes = readFile(trash.url.appending("directorysizes"), megabyte);
        if (!sizes)
            return; // not there yet
        EXPECT_TRUE(sizes->ends_with('\n'));
        for (const std::string& line : nonEmptyLines(*sizes)) {
            const auto fields = splitDroppingEmpty(line, ' ');
            ASSERT_EQ(fields.size(), 3U) << line;
            ASSERT_TRUE(isThere(trash.file(decoded(fields[2])))) << line;
        }
    };
    for (const pid_t child : children) {
        int status = 0;
        while (waitpid(child, &status, WNOHANG) == 0) {
            checkSizes();
            usleep(2000);
        }
        EXPECT_EQ(status, 0);
    }
    checkSizes();
    const auto names = trash.names();
    EXPECT_EQ(names.size(), std::size_t{processes * items});
    for (const std::string& name : names)
        trash.restore(name);
    for (int i = 0; i < processes * items; ++i)
        EXPECT_EQ(contentsOf(home.path(fmt::format("{}/cache/file", i))), fmt::format("{}", i));
    EXPECT_THAT(namesIn(trash.url), ElementsAre("directorysizes", "files", "info"));
}

TEST_F(TrashTest, SizesOfFoldersAreKept) {
    const auto lineFor = [&](const std::string& name, const std::string& encoded) {
        SeenInodes seen;
        struct stat status = {};
        stat(trash.infoFile(name).path().c_str(), &status);
        return fmt::format("{} {} {}\n", allocatedTreeSize(trash.file(name), seen, CancelToken()),
                           status.st_mtim.tv_sec, encoded);
    };
    const URL sizes = trash.url.appending("directorysizes");
    ASSERT_EQ(trashed(home.file("file", "x")), "");
    home.link("link", ".");
    ASSERT_EQ(trashed(home.path("link")), "");
    EXPECT_FALSE(isThere(sizes));

    home.allocatedFile("a folder/inner/file", 65'536);
    home.hardLink("a folder/again", "a folder/inner/file");
    ASSERT_EQ(trashed(home.path("a folder")), "");
    const std::string first = lineFor("a folder", "a%20folder");
    EXPECT_EQ(contentsOf(sizes), first);
    ASSERT_EQ(trashed(home.folder("100%\n")), "");
    const std::string second = lineFor("100%\n", "100%25%0A");
    EXPECT_EQ(contentsOf(sizes), first + second);

    // Others' lines stay, those of what is gone and those that are none are dropped.
    home.folder(".local/share/Trash/files/by other");
    home.file(".local/share/Trash/directorysizes",
              "7 8 by%20other\n5 6 gone\nnonsense\n1 2 \n\n" + first + "1 2 next\n");
    trash.restore("100%\n");
    ASSERT_EQ(trashed(home.folder("next")), "");
    EXPECT_EQ(contentsOf(sizes), "7 8 by%20other\n" + first + lineFor("next", "next"));
    EXPECT_THAT(namesIn(trash.url), ElementsAre("directorysizes", "files", "info"));
}

TEST_F(TrashTest, SizesNeverGoThroughALink) {
    const std::string line = "1 2 by%20other\n";
    home.folder(".local/share/Trash/files/by other");
    home.file("canary", line);
    home.link(".local/share/Trash/directorysizes", "../../../canary");
    ASSERT_EQ(trashed(home.folder("folder")), "");
    EXPECT_EQ(contentsOf(home.path("canary")), line);
    EXPECT_FALSE(contains(contentsOf(trash.url.appending("directorysizes")), line));
    EXPECT_EQ(fileInfo(trash.url.appending("directorysizes"), Links::dontFollow)->kind,
              FileKind::regular);
}

TEST_F(TrashTest, FolderIsTrashedEvenIfItsSizeCannotBeKept) {
    home.folder(".local/share/Trash/directorysizes");
    ASSERT_EQ(trashed(home.folder("folder")), "");
    EXPECT_THAT(trash.names(), ElementsAre("folder"));
    EXPECT_THAT(namesIn(trash.url), ElementsAre("directorysizes", "files", "info"));
}

TEST_F(TrashTest, LongPathsCanBeTrashed) {
    std::string deep = "deep";
    for (int level = 0; level < 15; ++level)
        deep += "/" + std::string(200, 'd');
    const URL item = home.file(deep + "/item", "x");
    ASSERT_EQ(trashed(item), "");
    EXPECT_EQ(trash.restore("item"), item.path());
}

TEST_F(TrashTest, OrdinaryUserIsToldWhatHeMayNotMove) {
    home.setMode("", 0777);
    const std::string answer = asOrdinaryUser([&] {
        home.file("closed parent/item", "x");
        home.file("item in closed state/file", "x");
        home.file("unreadable", "x");
        home.setMode("closed parent", 0555);
        home.setMode("item in closed state", 0555);
        home.setMode("unreadable", 0);
        const std::string before =
            treeText(home.path("closed parent")) + treeText(home.path("item in closed state"));
        std::string said = trashed(home.path("closed parent/item")) + "\n";
        said += trashed(home.path("item in closed state")) + "\n";
        if (treeText(home.path("closed parent")) + treeText(home.path("item in closed state")) !=
            before)
            said += "something changed";
        said += fmt::format("{}", trash.names().size());
        said += trashed(home.path("unreadable"));
        return said + trash.names().at(0);
    });
    EXPECT_EQ(answer, refusal(home.path("closed parent/item"), "Permission denied") + "\n" +
                          refusal(home.path("item in closed state"), "Permission denied") + "\n" +
                          "0unreadable");
}

/// A disk of its own, mounted inside the home folder.
class TrashOnADisk : public TrashTest {
protected:
    /// Empty when all went as it should.
    void onDisk(const std::function<std::string()>& check,
                const std::string& options = "mode=755") {
        const auto answer = withOwnMounts([&] {
            if (mount("none", disk.path().c_str(), "tmpfs", 0, options.c_str()) != 0)
                return std::string("no disk");
            return check();
        });
        if (!answer)
            GTEST_SKIP() << mountsRefused;
        EXPECT_EQ(*answer, "");
    }

    bool remountReadOnly() const {
        return mount("none", disk.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

    const std::string user = fmt::format("{}", 0); ///< who owns the mounts
    URL disk = home.folder("my disk");
    Trash ofAll{disk.appending(".Trash/" + user), disk};
    Trash own{disk.appending(".Trash-" + user), disk};
};

/// What differs, for an answer.
template <class A, class B>
std::string compared(const A& found, const B& expected, const std::string& what) {
    if (found == expected)
        return "";
    return what + ": " + testing::PrintToString(found) + " instead of " +
           testing::PrintToString(expected) + "\n";
}

/// A list in braces is evaluated in its order, which operands of "+" need not be.
std::string joined(std::initializer_list<std::string> answers) {
    std::string all;
    for (const std::string& answer : answers)
        all += answer;
    return all;
}

using Names = std::vector<std::string>;

TEST_F(TrashOnADisk, OwnFolderAtItsTopHoldsPathsRelativeToIt) {
    onDisk([&] {
        const URL item = home.file("my disk/a folder/100%", "x");
        std::string said = compared(trashed(item), "", "trashed");
        struct stat status = {};
        stat(own.url.path().c_str(), &status);
        said += compared(status.st_mode & 07777U, 0700U, "mode");
        said += compared(own.names(), Names{"100%"}, "names");
        said += compared(own.writtenPath("100%"), "a%20folder/100%25", "path");
        said += compared(own.restore("100%"), item.path(), "restored");
        said += compared(contentsOf(item), "x", "contents");
        said += compared(trashed(home.file("my disk/at the top")), "", "at the top");
        said += compared(own.writtenPath("at the top"), "at%20the%20top", "path");
        return joined({said, compared(trash.names(), Names{}, "names in the home's Trash")});
    });
}

TEST_F(TrashOnADisk, FolderForAllIsUsedOnlyWhereItCanBeTrusted) {
    struct Case {
        const char* name;
        std::function<bool()> arrange;
        bool used;
    };
    const auto folderForAll = [&](unsigned mode) {
        home.folder("my disk/.Trash");
        home.setMode("my disk/.Trash", mode);
    };
    const auto path = [&](const std::string& name) { return disk.path() + "/" + name; };
    const std::array cases{
        Case{"sticky", [&] { return folderForAll(01777), true; }, true},
        Case{"sticky, with the user's folder",
             [&] { return folderForAll(01777), home.folder("my disk/.Trash/" + user), true; },
             true},
        Case{"not sticky", [&] { return folderForAll(0777), true; }, false},
        Case{"link to a sticky folder",
             [&] {
                 home.folder("my disk/other");
                 home.setMode("my disk/other", 01777);
                 home.link("my disk/.Trash", "other");
                 return true;
             },
             false},
        Case{"file", [&] { return home.file("my disk/.Trash"), true; }, false},
        Case{"another's folder for the user",
             [&] {
                 folderForAll(01777);
                 home.folder("my disk/.Trash/" + user);
                 return chown(path(".Trash/" + user).c_str(), somebodyElse, somebodyElse) == 0;
             },
             false},
        Case{"link for the user",
             [&] {
                 folderForAll(01777);
                 home.folder("my disk/.Trash/other");
                 home.link("my disk/.Trash/" + user, "other");
                 return true;
             },
             false},
    };
    onDisk([&] {
        std::string said;
        for (const Case& each : cases) {
            if (!each.arrange())
                continue; // who is root in a user namespace alone has nobody to give a file to
            const std::string before = treeText(disk.appending(".Trash"));
            const URL item = home.file("my disk/place/item", "x");
            said += compared(trashed(item), "", each.name);
            const Trash& expected = each.used ? ofAll : own;
            said += compared(expected.names(), Names{"item"}, each.name);
            said += compared(expected.writtenPath("item"), "place/item", each.name);
            if (!each.used)
                said += compared(treeText(disk.appending(".Trash")), before, each.name);
            said += compared(expected.restore("item"), item.path(), each.name);
            for (const std::string& name : namesIn(disk))
                fs::remove_all(path(name));
        }
        return said;
    });
}

TEST_F(TrashOnADisk, FolderThatCannotBeTrustedIsLoggedOnce) {
    if (fileExists(URL("/run/systemd/journal/socket")))
        GTEST_SKIP() << "this system has a journal, which takes all entries";
    onDisk([&] {
        home.folder("my disk/.Trash");
        testing::internal::CaptureStderr();
        std::string said = trashed(home.file("my disk/a"));
        said += trashed(home.file("my disk/b"));
        const std::string logged = testing::internal::GetCapturedStderr();
        return joined({said, compared(nonEmptyLines(logged).size(), 1U, logged),
                       (contains(logged, disk.path() + "/.Trash") ? "" : logged)});
    });
}

TEST_F(TrashOnADisk, NothingIsTrashedIntoWhatCannotBeTrusted) {
    const std::array<std::pair<const char*, std::function<bool()>>, 3> cases{{
        {"link",
         [&] {
             home.folder("my disk/other");
             home.link("my disk/.Trash-" + user, "other");
             return true;
         }},
        {"another's",
         [&] {
             const URL folder = home.folder("my disk/.Trash-" + user);
             return chown(folder.path().c_str(), somebodyElse, somebodyElse) == 0;
         }},
        {"file", [&] { return home.file("my disk/.Trash-" + user), true; }},
    }};
    onDisk([&] {
        std::string said;
        for (const auto& [name, arrange] : cases) {
            if (!arrange())
                continue;
            const URL item = home.file("my disk/place/item", "x");
            const std::string before = treeText(disk);
            said += compared(trashed(item), refusal(item, "Operation not permitted"), name);
            said += compared(treeText(disk), before, name);
            for (const std::string& each : namesIn(disk))
                fs::remove_all(disk.path() + "/" + each);
        }
        return said;
    });
}

TEST_F(TrashOnADisk, LinksInsideATrashFolderAreNotFollowed) {
    for (const char* name : {"files", "info"})
        onDisk([&] {
            home.folder("my disk/other");
            home.link("my disk/.Trash-" + user + "/" + name, "../other");
            const URL item = home.file("my disk/item", "x");
            const std::string said = trashed(item);
            return joined({compared(said.ends_with("It stays where it is."), true, said),
                           compared(namesIn(disk.appending("other")), Names{}, "other"),
                           compared(contentsOf(item), "x", "item")});
        });
}

TEST_F(TrashOnADisk, ReadOnlyDiskStaysAsItIs) {
    onDisk([&] {
        const URL item = home.file("my disk/item", "x");
        std::string before = treeText(disk);
        if (!remountReadOnly())
            return std::string("not read-only");
        return joined({compared(trashed(item), refusal(item, "Read-only file system"), "sentence"),
                       compared(treeText(disk), before, "disk"),
                       compared(trash.names(), Names{}, "names in the home's Trash")});
    });
    onDisk([&] {
        std::string said = trashed(home.file("my disk/first"));
        const URL item = home.file("my disk/item", "x");
        const std::string before = treeText(disk);
        if (!remountReadOnly())
            return std::string("not read-only");
        return joined({said,
                       compared(trashed(item), refusal(item, "Read-only file system"), "sentence"),
                       compared(treeText(disk), before, "disk")});
    });
}

TEST_F(TrashOnADisk, FullDiskKeepsTheItemAndNothingElse) {
    const auto check = [&] {
        const URL item = home.file("my disk/item", std::string(4096, 'x'));
        const std::string sentence = trashed(item);
        return joined({compared(sentence, refusal(item, "No space left on device"), "sentence"),
                       compared(contentsOf(item), std::string(4096, 'x'), "contents"),
                       compared(own.names(), Names{}, "names")});
    };
    onDisk(check, "size=4096");   // no room in a file
    onDisk(check, "nr_inodes=5"); // no room for the info file
    onDisk(check, "nr_inodes=3"); // no room for the folders
}

TEST_F(TrashOnADisk, SameFileSystemMountedAgainHasItsOwnTrash) {
    onDisk([&] {
        setenv("XDG_DATA_HOME", (disk.path() + "/data").c_str(), 1);
        const Trash ofHome{disk.appending("data/Trash"), disk};
        const URL view = home.folder("my disk/view");
        home.file("my disk/real/sub folder/item", "x");
        if (!test::mountAgain(disk.appending("real"), view))
            return std::string("not mounted");
        const URL item = view.appending("sub folder/item");
        const Trash ofView{view.appending(".Trash-" + user), view};
        return joined(
            {compared(trashed(item), "", "trashed"),
             compared(ofHome.names(), Names{}, "names in the home's Trash"),
             compared(ofView.names(), Names{"item"}, "names"),
             compared(ofView.writtenPath("item"), "sub%20folder/item", "path"),
             compared(ofView.restore("item"), item.path(), "restored"),
             compared(contentsOf(disk.appending("real/sub folder/item")), "x", "contents")});
    });
}

TEST_F(TrashOnADisk, HomeFolderThatCannotHoldATrashLeavesItToTheDisk) {
    onDisk([&] {
        setenv("XDG_DATA_HOME", (disk.path() + "/data").c_str(), 1);
        home.file("my disk/data");
        const URL item = home.file("my disk/place/item", "x");
        return joined({compared(trashed(item), "", "trashed"),
                       compared(own.restore("item"), item.path(), "restored")});
    });
}

TEST_F(TrashOnADisk, TrashOfTheHomeOnTheSameDiskIsPreferred) {
    onDisk([&] {
        setenv("XDG_DATA_HOME", (disk.path() + "/data").c_str(), 1);
        const Trash ofHome{disk.appending("data/Trash"), disk};
        const URL item = home.file("my disk/place/item", "x");
        return joined({compared(trashed(item), "", "trashed"),
                       compared(ofHome.writtenPath("item").starts_with("/"), true, "absolute"),
                       compared(ofHome.restore("item"), item.path(), "restored"),
                       compared(isThere(own.url), false, "another Trash")});
    });
}

TEST_F(TrashOnADisk, FolderWithADiskInItIsLeftAlone) {
    for (const std::string name : {"plain", "with blanks", "line\nbreak", "back\\slash", "\\040"})
        onDisk([&] {
            const URL inner = home.folder("my disk/outer/deep/" + name);
            const URL outer = home.path("my disk/outer");
            if (!test::mountMemory(inner))
                return std::string("not mounted");
            home.file("my disk/outer/deep/" + name + "/canary", "untouched");
            const auto result = moveToTrash(approved(outer));
            if (result)
                return std::string("moved");
            // A neighbour whose name only begins alike may go.
            const URL neighbour = home.folder("my disk/out");
            return joined(
                {compared(
                     result.error(),
                     FileActionError{Kind::mounted, {EBUSY, "move to the Trash", inner.path()}},
                     "error"),
                 compared(contentsOf(inner.appending("canary")), "untouched", "canary"),
                 compared(trashed(neighbour), "", "neighbour"),
                 compared(moveToTrash(approved(inner)).error().kind, Kind::mounted, "itself")});
        });
}

TEST_F(TrashOnADisk, OrdinaryUserNeedsATrashThatHeMayMake) {
    home.setMode("", 0777);
    if (geteuid() != 0)
        GTEST_SKIP() << "takes two users";
    onDisk([&] {
        home.folder("my disk/place");
        home.setMode("my disk/place", 0777);
        return asOrdinaryUser([&] {
            const URL item = home.file("my disk/place/item", "x");
            return joined({compared(trashed(item), refusal(item, "Permission denied"), "sentence"),
                           compared(contentsOf(item), "x", "contents")});
        });
    });
    onDisk([&] {
        home.folder("my disk/place");
        home.setMode("my disk/place", 0777);
        home.folder("my disk/.Trash");
        home.setMode("my disk/.Trash", 01777);
        return asOrdinaryUser([&] {
            const URL item = home.file("my disk/place/item", "x");
            const Trash users{disk.appending(fmt::format(".Trash/{}", geteuid())), disk};
            return joined({compared(trashed(item), "", "trashed"),
                           compared(users.restore("item"), item.path(), "restored")});
        });
    });
}

} // namespace
} // namespace tidewright

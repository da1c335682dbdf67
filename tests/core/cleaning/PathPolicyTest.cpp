#include "core/cleaning/PathPolicy.h"

#include "core/platform/posix/FileDescriptor.h"
#include "tests/support/ForkedAnswer.h"
#include "tests/support/MountNamespace.h"
#include "tests/support/TempHome.h"
#include "tests/support/Unprivileged.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <thread>

namespace tidewright {

namespace {

using Kind = PolicyViolation::Kind;
using test::TempHome;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr const char* allowed = "allowed";

FileIdentity identityAt(const URL& url) {
    const auto info = fileInfo(url, Links::dontFollow);
    EXPECT_TRUE(info) << url.path();
    return info ? info->identity() : FileIdentity();
}

/// "allowed", or the kind of the violation.
std::string verdict(const PathPolicy& policy, const URL& url, bool isProjectItem = false) {
    const auto result = policy.validate(url, isProjectItem);
    EXPECT_EQ(policy.isAllowed(url, isProjectItem), result.has_value());
    const auto several = policy.validate(std::vector{url, url}, isProjectItem);
    EXPECT_EQ(several.has_value(), result.has_value());
    if (!result) {
        EXPECT_EQ(result.error().path, url.standardized().path());
        EXPECT_EQ(several.error(), result.error());
        return std::string(rawValue(result.error().kind));
    }
    EXPECT_EQ(result->url(), url.standardized());
    EXPECT_EQ(result->name(), url.standardized().lastPathComponent());
    return allowed;
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/dev/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

/// A home, a temporary folder that is also known by a link, and what is none of their business.
class PathPolicyTest : public testing::Test {
protected:
    PathPolicyTest() {
        for (const char* folder : {"home", "real temporary", "outside"})
            disk.folder(folder);
        disk.link("temporary", "real temporary");
    }
    ~PathPolicyTest() override { EXPECT_EQ(openDescriptors(), m_before); }

    URL inHome(std::string_view path) const { return disk.path("home").appending(path); }

    PathPolicy policy(const std::vector<URL>& projects = {},
                      const std::vector<URL>& exclusions = {}) const {
        return PathPolicy(disk.path("home"), disk.path("temporary"), projects, exclusions);
    }

    /// Of a path in the home folder, which "~" stands for.
    std::string judged(const std::string& path, bool isProjectItem = false) const {
        return judged(policy(), path, isProjectItem);
    }
    std::string judged(const PathPolicy& by,
                       const std::string& path,
                       bool isProjectItem = false) const {
        const bool isInHome = path.starts_with('~');
        return verdict(by, URL(isInHome ? disk.path("home").path() + path.substr(1) : path),
                       isProjectItem);
    }

    TempHome disk;

private:
    std::size_t m_before = openDescriptors();
};

TEST_F(PathPolicyTest, NineteenPlacesAreNeverTouched) {
    const PathPolicy me(URL("/Users/me/"), URL("/tmp"), {}, {});
    EXPECT_THAT(me.neverTouchPrefixes,
                ElementsAre("/System", "/usr", "/bin", "/sbin", "/private/var/vm",
                            "/Library/Keychains", "/Applications", "/Users/me/Library/Keychains",
                            "/Users/me/Library/Mobile Documents", "/Users/me/Library/CloudStorage",
                            "/Users/me/Library/Mail", "/Users/me/Library/Messages",
                            "/Users/me/Library/Photos",
                            "/Users/me/Library/Application Support/Claude/vm_bundles",
                            "/Users/me/Library/Application Support/com.apple.TCC",
                            "/Users/me/Library/Group Containers",
                            "/Users/me/Pictures/Photos Library.photoslibrary", "/Users/me/.ssh",
                            "/Users/me/.gnupg"));
    for (const std::string& path : me.neverTouchPrefixes) {
        EXPECT_EQ(verdict(me, URL(path)), "protectedPath");
        EXPECT_EQ(verdict(me, URL(path + "/something in it")), "protectedPath");
        EXPECT_NE(verdict(me, URL(path + "x")), "protectedPath") << path;
    }
}

TEST_F(PathPolicyTest, TwentyOneContainersStay) {
    const PathPolicy me(URL("/Users/me/"), URL("/tmp"), {}, {});
    EXPECT_THAT(me.containers,
                UnorderedElementsAre(
                    "/Users/me", "/Users/me/Library", "/Users/me/Library/Caches",
                    "/Users/me/Library/Application Support", "/Users/me/Library/Logs",
                    "/Users/me/Library/Developer", "/Users/me/Library/Containers",
                    "/Users/me/Library/Preferences", "/Users/me/Documents", "/Users/me/Desktop",
                    "/Users/me/Downloads", "/Users/me/Movies", "/Users/me/Music",
                    "/Users/me/Pictures", "/Users/me/.Trash", "/Users/me/.gradle",
                    "/Users/me/.android", "/Users/me/.npm", "/Users/me/Library/Android",
                    "/Users/me/Library/Android/sdk", "/Users/me/Library/Developer/Xcode"));
    for (const std::string& path : me.containers) {
        EXPECT_EQ(verdict(me, URL(path)), "containerItself");
        EXPECT_EQ(verdict(me, URL(path + "/something in it")), allowed);
    }
}

TEST_F(PathPolicyTest, ThreeRootsInOrder) {
    const PathPolicy made(URL(disk.url().path() + "/./home/x/../"),
                          URL(disk.url().path() + "//outside/../temporary/"), {}, {});
    EXPECT_EQ(made.home, disk.path("home"));
    EXPECT_THAT(made.allowedRoots, ElementsAre(disk.path("home"), disk.path("temporary"),
                                               disk.path("real temporary")));
    disk.link("circle", "circle");
    const PathPolicy lost(disk.path("home"), disk.path("circle"), {}, {});
    EXPECT_THAT(lost.allowedRoots,
                ElementsAre(disk.path("home"), disk.path("circle"), disk.path("circle")));
}

TEST_F(PathPolicyTest, ListsAreStandardizedInTheirOrder) {
    const std::vector<URL> given{URL("/b/../z/"), URL("/a//b/."), URL("/m")};
    const PathPolicy made(URL("/h"), URL("/t"), given, {given.rbegin(), given.rend()});
    EXPECT_THAT(made.projectRoots, ElementsAre(URL("/z"), URL("/a/b"), URL("/m")));
    EXPECT_THAT(made.userExclusions, ElementsAre(URL("/m"), URL("/a/b"), URL("/z")));
}

TEST_F(PathPolicyTest, EachViolationHasItsSentence) {
    const std::pair<Kind, const char*> sentences[] = {
        {Kind::protectedPath, "/a is on the never-touch list."},
        {Kind::protectedName, "/a looks like source control, signing keys or secrets."},
        {Kind::containerItself, "/a is a top-level folder; only items inside it can be cleaned."},
        {Kind::outsideAllowedRoots, "/a is outside the folders Tidewright is allowed to clean."},
        {Kind::symlinkEscapes, "/a resolves to a location outside the allowed folders."},
        {Kind::projectNotOptedIn, "/a is inside a project and was not explicitly selected."},
    };
    ASSERT_EQ(std::size(sentences), allCases<Kind>().size());
    for (std::size_t i = 0; i < std::size(sentences); ++i) {
        EXPECT_EQ(allCases<Kind>()[i], sentences[i].first);
        EXPECT_EQ((PolicyViolation{sentences[i].first, "/a"}.errorDescription()),
                  sentences[i].second);
    }
    const PolicyViolation one{Kind::symlinkEscapes, "/a"};
    const PolicyViolation otherKind{Kind::protectedPath, "/a"};
    const PolicyViolation otherPath{Kind::symlinkEscapes, "/b"};
    EXPECT_EQ(one, (PolicyViolation{Kind::symlinkEscapes, "/a"}));
    EXPECT_NE(one, otherKind);
    EXPECT_NE(one, otherPath);
    const std::hash<PolicyViolation> hash;
    EXPECT_NE(hash(one), hash(otherKind));
    EXPECT_NE(hash(one), hash(otherPath));
}

struct Case {
    std::string path;
    const char* expected;
};

TEST_F(PathPolicyTest, PathsAreJudgedByTheRules) {
    const Case cases[] = {
        {"/", "containerItself"},
        {"~", "containerItself"},
        {"~/Library", "containerItself"},
        {"~/Downloads", "containerItself"},
        {"~/.Trash", "containerItself"},
        {"~/.gradle", "containerItself"},
        {"~/Library/Developer/Xcode", "containerItself"},
        {"~/Library/Android/sdk", "containerItself"},
        {"~/Library/Caches/com.example", allowed},
        {"~/Downloads/old.zip", allowed},
        {"~/.Trash/a", allowed},
        {"~/.gradle/caches", allowed},
        {"~/Library/Developer/Xcode/DerivedData", allowed},
        {"~/Library/Android/sdk/ndk", allowed},
        {"~/Library/Developer", "containerItself"},
        {"~/.cache", allowed},
        {"~/Documents/../Downloads/", "containerItself"},
        {"/Applications/Foo.app", "protectedPath"},
        {"/Applications", "protectedPath"},
        {"~/project/.git/config", "protectedName"},
        {"~/project/App.KeyStore", "protectedName"},
        {"/etc/passwd", "outsideAllowedRoots"},
        {disk.path("outside/a").path(), "outsideAllowedRoots"},
        {disk.path("home beside/a").path(), "outsideAllowedRoots"},
        {disk.path("temporary/a").path(), allowed},
        {disk.path("real temporary/a/b").path(), allowed},
    };
    for (const auto& [path, expected] : cases)
        for (const bool isProjectItem : {false, true})
            EXPECT_EQ(judged(path, isProjectItem), expected) << path;
}

TEST_F(PathPolicyTest, WhatIsInAProjectNeedsTheFlag) {
    disk.folder("home/code/app/node_modules");
    const PathPolicy by = policy({inHome("code/app")});
    for (const char* path : {"~/code/app/node_modules", "~/code/app", "~/code/app/missing/x"}) {
        EXPECT_EQ(judged(by, path, true), allowed) << path;
        EXPECT_EQ(judged(by, path, false), "projectNotOptedIn") << path;
    }
    EXPECT_EQ(judged(by, "~/code/application"), allowed);
    EXPECT_EQ(judged(by, "~/code/ap"), allowed);
}

TEST_F(PathPolicyTest, WhatIsExcludedStays) {
    const PathPolicy by = policy({}, {inHome("first"), disk.path("outside"), URL("/opt/x")});
    const Case cases[] = {
        {"~/first", "protectedPath"}, {"~/first/a/b", "protectedPath"},
        {"~/first.a", allowed},       {disk.path("outside/a").path(), "protectedPath"},
        {"/opt/x", "protectedPath"},  {"/opt/y", "outsideAllowedRoots"},
    };
    for (const auto& [path, expected] : cases)
        for (const bool isProjectItem : {false, true})
            EXPECT_EQ(judged(by, path, isProjectItem), expected) << path;
    EXPECT_EQ(judged(policy({}, {URL("/")}), "~/.cache"), "protectedPath");
}

// Each path meets two rules that follow one another; the first is the one that is told.
TEST_F(PathPolicyTest, TheFirstRuleDecides) {
    disk.link("home/leads out", "../outside");
    const auto ofHome = [&](const std::string& home, const std::string& path) {
        const PathPolicy by(URL(home), disk.path("temporary"), {URL(home)}, {});
        return verdict(by, URL(path));
    };
    EXPECT_EQ(ofHome("/Applications/me", "/Applications/me"), "containerItself");
    EXPECT_EQ(ofHome("/Applications/me", "/Applications/me/a"), "protectedPath");
    EXPECT_EQ(ofHome("/srv/.env", "/srv/.env/Library"), "containerItself");
    EXPECT_EQ(ofHome("/srv/.env", "/srv/.env/.ssh"), "protectedPath");
    EXPECT_EQ(ofHome("/srv/.env", "/srv/.env/a"), "protectedName");

    const PathPolicy by = policy({inHome("leads out/app")},
                                 {inHome("Downloads"), inHome("code/.git"), URL("/opt/x")});
    const Case cases[] = {
        {"~/Downloads", "containerItself"},      // and excluded
        {"~/Downloads/a", "protectedPath"},      //
        {"~/.ssh/key.pem", "protectedPath"},     // and a protected name
        {"~/code/.git/config", "protectedPath"}, // the same, by exclusion
        {"/opt/x/y.pem", "protectedPath"},       // the same, and outside
        {"/etc/ssl/y.pem", "protectedName"},     // and outside
        {"~/leads out/y.pem", "protectedName"},  // and out by a link
        {disk.path("home/../outside/a").path(), "outsideAllowedRoots"},
        {"~/leads out/app", "symlinkEscapes"}, // and in a project
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(judged(by, path), expected) << path;
    // Outside, and by a link in again or elsewhere.
    disk.link("outside/link", "../outside");
    EXPECT_EQ(verdict(by, disk.path("outside/link/a")), "outsideAllowedRoots");
    // All rules are met but those that are asked.
    const PathPolicy everything = policy({URL("/")}, {inHome(".ssh")});
    EXPECT_EQ(judged(everything, "~/.cache"), "projectNotOptedIn");
    EXPECT_EQ(judged(everything, "~/.cache", true), allowed);
}

TEST_F(PathPolicyTest, NoSpellingOpensAForbiddenPlace) {
    const std::string home = disk.path("home").path();
    const std::string up = "/../../../../../../../../../../../../../../../..";
    const Case cases[] = {
        {"", "containerItself"},
        {".", "containerItself"},
        {"..", "containerItself"},
        {"//", "containerItself"},
        {"///", "containerItself"},
        {"/.", "containerItself"},
        {"/..", "containerItself"},
        {"/../..//.", "containerItself"},
        {"/etc/..", "containerItself"},
        {"~" + up, "containerItself"},
        {"~/", "containerItself"},
        {"~//", "containerItself"},
        {"~/.", "containerItself"},
        {"~/x/..", "containerItself"},
        {"/.." + home, "containerItself"},
        {"//" + home, "containerItself"},
        {home.substr(1), "containerItself"}, // a relative path begins at the root
        {"~/Library/", "containerItself"},
        {"~//Library", "containerItself"},
        {"~/./Library/.", "containerItself"},
        {"~/Library/Caches/..", "containerItself"},
        {"~/x/../Library//Caches///", "containerItself"},
        {"~/.ssh/", "protectedPath"},
        {"~//.ssh", "protectedPath"},
        {"~/./.ssh/./id", "protectedPath"},
        {"~/Documents/../.ssh//id/", "protectedPath"},
        {"~/Library/Keychains/x/../../Keychains", "protectedPath"},
        {"/.." + home + "/.gnupg", "protectedPath"},
        {"~" + up + "/usr/bin", "protectedPath"},
        {"/usr/../bin", "protectedPath"},
        {"//Applications", "protectedPath"},
        {"usr/lib", "protectedPath"},
        {"~/../outside", "outsideAllowedRoots"},
        {"~" + up + "/etc", "outsideAllowedRoots"},
        {"Downloads/a", "outsideAllowedRoots"},
        {"~/x/./.git/", "protectedName"},
        {"~/x//.git/..//.git", "protectedName"},
    };
    for (const auto& [path, expected] : cases)
        for (const bool isProjectItem : {false, true})
            EXPECT_EQ(judged(path, isProjectItem), expected) << path;
}

TEST_F(PathPolicyTest, NamesThatAreProtected) {
    const std::string names[] = {
        ".git",
        ".hg",
        ".svn",
        "key_stores",
        "keystores",
        ".env",
        // each with any beginning
        "a.keystore",
        "a.jks",
        "a.p12",
        "a.mobileprovision",
        "a.pem",
        "a.p8",
        ".keystore",
        ".jks",
        ".p12",
        ".mobileprovision",
        ".pem",
        ".p8",
        "..pem",
        // with any end
        ".env.",
        ".env.local",
        ".env.a.b",
        // in any case
        ".GIT",
        ".Hg",
        ".sVn",
        "KEY_STORES",
        "KeyStores",
        ".ENV",
        ".Env.Local",
        "A.KEYSTORE",
        "a.JKS",
        "a.P12",
        "a.MobileProvision",
        "a.Pem",
        "a.P8",
        "\u212AEY_STORES",
        "\u212Aeystores",
        "a.j\u212As",
        "a.\u212AEYSTORE",
        // in what some file systems take for the same
        "key_\u017Ftores",
        ".\u017Fvn",
        ".g\u200Cit",
        ".e\u00ADnv",
        "\uFEFF.git",
        "a.pe\u200Dm",
        "\uFF0E\uFF47\uFF49\uFF54",
        // with any bytes around
        "cl\u00E9.pem",
        "cle\u0301.pem",
        "\xff.pem",
        ".env.\xff",
        "\n.p12",
        ".env.\n",
        std::string(5000, 'x') + ".pem",
    };
    for (const std::string& name : names) {
        EXPECT_TRUE(PathPolicy::hasProtectedComponent(URL("/" + name))) << name;
        EXPECT_TRUE(PathPolicy::hasProtectedComponent(URL("/a/" + name + "/b/c"))) << name;
        EXPECT_EQ(judged("~/a/" + name), "protectedName") << name;
        EXPECT_EQ(judged("~/a/" + name + "/b/c", true), "protectedName") << name;
    }
}

TEST_F(PathPolicyTest, NamesThatOnlyLookAlike) {
    const std::string names[] = {
        "git",          "hg",
        "svn",          ".gitignore",
        "x.git",        "x.gitignore",
        ".gi",          ".git ",
        ".github",      ".hgignore",
        ".svn2",        "key_store",
        "keystore",     "keystores2",
        "my_keystores", "key-stores",
        "env",          ".environment",
        ".envrc",       ".en",
        "x.env",        ".env-local",
        "env.local",    "x.env.local",
        "a.keystores",  "a.jks2",
        "ajks",         "p12",
        "a.p122",       "pem",
        "apem",         "a.pem.bak",
        "a.p88",        "a.mobileprovisions",
        "p8",           ".sshkeys",
        ".ssh2",        ".gnupg~",
        "Library.",     "Libraryx",
        "Downloads ",   "library",
        "\xff",         "a\nb",
        "\xc3(",        "cl\u00E9",
        "cle\u0301",    std::string(5000, 'x'),
    };
    for (const std::string& name : names) {
        EXPECT_FALSE(PathPolicy::hasProtectedComponent(URL("/" + name + "/a"))) << name;
        EXPECT_EQ(judged("~/" + name), allowed) << name;
        EXPECT_EQ(judged("~/" + name + "/a"), allowed) << name;
    }
    EXPECT_FALSE(PathPolicy::hasProtectedComponent(URL("/")));
    EXPECT_FALSE(PathPolicy::hasProtectedComponent(URL("")));
}

TEST_F(PathPolicyTest, BytesAreComparedAsTheyAre) {
    disk.folder("home/cl\u00E9");
    disk.folder("home/\xff");
    const PathPolicy by = policy({inHome("\xfe")}, {inHome("cl\u00E9"), inHome("\xff")});
    EXPECT_EQ(judged(by, "~/cl\u00E9/a"), "protectedPath");
    EXPECT_EQ(judged(by, "~/cle\u0301/a"), allowed); // a folder of its own on this disk
    EXPECT_EQ(judged(by, "~/\xff"), "protectedPath");
    EXPECT_EQ(judged(by, "~/\xfe"), "projectNotOptedIn");
    EXPECT_EQ(judged(by, "~/\xfd"), allowed);
    EXPECT_EQ(judged(by, "~/LIBRARY/Caches"), allowed);
}

TEST_F(PathPolicyTest, NoPathGoesOnBehindAZeroByte) {
    const std::string zero(1, '\0');
    disk.folder("home/.cache");
    const Case cases[] = {
        {"~/.cache" + zero, "outsideAllowedRoots"},
        {"~/.cache" + zero + "/a", "outsideAllowedRoots"},
        {"~/.ssh" + zero, "outsideAllowedRoots"},
        {"~/Library" + zero + "x", "outsideAllowedRoots"},
        {zero, "outsideAllowedRoots"},
        {"~" + zero, "outsideAllowedRoots"},
        {"~/.ssh/" + zero, "protectedPath"},
        {"~/a" + zero + ".pem", "protectedName"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(judged(path, true), expected) << path;
}

TEST_F(PathPolicyTest, PermissionHoldsTheFolderAndWhatStandsThere) {
    disk.folder("home/.cache/inner");
    disk.link("home/link", ".cache");
    const auto direct = policy().validate(inHome(".cache/inner/"), false);
    const auto linked = policy().validate(inHome("link/inner"), false);
    ASSERT_TRUE(direct && linked);
    EXPECT_EQ(direct->url(), inHome(".cache/inner"));
    EXPECT_EQ(linked->url(), inHome("link/inner"));
    for (const ApprovedPath& path : {*direct, *linked}) {
        EXPECT_EQ(path.name(), "inner");
        EXPECT_EQ((*path.folder())->path(), inHome(".cache"));
        EXPECT_EQ((*path.folder())->identity(), identityAt(inHome(".cache")));
        EXPECT_EQ(path.item(), identityAt(inHome(".cache/inner")));
    }
    const auto link = policy().validate(inHome("link/"), false);
    ASSERT_TRUE(link);
    EXPECT_EQ(link->item(), identityAt(inHome("link"))); // itself, not where it leads
    EXPECT_NE(link->item(), identityAt(inHome(".cache")));
}

TEST_F(PathPolicyTest, WhereNothingStandsThereIsNothingToActOn) {
    disk.file("home/file");
    disk.folder("home/folder");
    const auto missing = policy().validate(inHome("folder/missing"), false);
    ASSERT_TRUE(missing);
    EXPECT_TRUE(missing->folder());
    EXPECT_EQ(missing->item(), std::nullopt);
    const auto inMissing = policy().validate(inHome("missing/a"), false);
    ASSERT_TRUE(inMissing);
    EXPECT_EQ(inMissing->folder().error().code, ENOENT);
    EXPECT_EQ(inMissing->item(), std::nullopt);
    const auto inFile = policy().validate(inHome("file/a"), false);
    ASSERT_TRUE(inFile);
    EXPECT_EQ(inFile->folder().error().code, ENOTDIR);
}

TEST_F(PathPolicyTest, LongPathsAreJudgedToTheirEnd) {
    std::string path = inHome("deep").path();
    disk.folder("home/deep");
    disk.file("home/.ssh/id");
    FileDescriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    while (path.size() < 5000) {
        const std::string name(100, 'd');
        ASSERT_EQ(mkdirat(folder.get(), name.c_str(), 0755), 0);
        folder = FileDescriptor(openat(folder.get(), name.c_str(), O_RDONLY | O_DIRECTORY));
        path += "/" + name;
    }
    ASSERT_EQ(mkdirat(folder.get(), "item", 0755), 0);
    const auto link = [&](const char* name, const URL& target) {
        EXPECT_EQ(symlinkat(target.path().c_str(), folder.get(), name), 0);
    };
    link("out", disk.path("outside"));
    link("secret", inHome(".ssh"));
    EXPECT_EQ(judged(path + "/out"), allowed);
    EXPECT_EQ(judged(path + "/out/a"), "symlinkEscapes");
    EXPECT_EQ(judged(path + "/secret/id"), "protectedPath");
    EXPECT_EQ(judged(path + "/item/.git/x"), "protectedName");
    const auto approved = policy().validate(URL(path + "/item"), false);
    ASSERT_TRUE(approved);
    struct stat status = {};
    ASSERT_EQ(fstatat(folder.get(), "item", &status, 0), 0);
    ASSERT_TRUE(approved->item());
    EXPECT_EQ(approved->item()->inode, status.st_ino);
    // An excluded folder so deep is known by its text at least.
    EXPECT_EQ(judged(policy({}, {URL(path)}), path + "/item"), "protectedPath");
}

TEST_F(PathPolicyTest, LinksAreFollowedInTheFolderAndNotInTheItem) {
    disk.folder("outside/folder");
    disk.folder("home/real/folder");
    disk.file("home/file");
    disk.link("home/out", disk.path("outside").path());
    disk.link("home/relative out", "../outside");
    disk.link("home/real/up and out", "../../outside/folder");
    disk.link("home/to root", "/");
    disk.link("home/in", "real");
    disk.link("home/in by dots", "../home/./real/../real");
    disk.link("home/into temporary", "../temporary/x/..");
    disk.link("home/chain", "second");
    disk.link("home/second", "out");
    disk.link("home/chain in", "in");
    disk.link("home/circle", "other circle");
    disk.link("home/other circle", "circle");
    disk.link("home/dangling", "missing/x");
    disk.link("home/dangling out", "../outside/missing/x");
    disk.link("home/back", "../outside/back");
    disk.link("outside/back", "../home/real");
    disk.link("real temporary/out", "../outside");
    const Case cases[] = {
        {"~/out", allowed}, // the link itself
        {"~/out/", allowed},
        {"~/out/folder", "symlinkEscapes"},
        {"~/out/folder/a", "symlinkEscapes"},
        {"~/out/missing", "symlinkEscapes"},
        {"~/relative out/a", "symlinkEscapes"},
        {"~/real/up and out", allowed},
        {"~/real/up and out/a", "symlinkEscapes"},
        {"~/in/up and out/a", "symlinkEscapes"},
        {"~/to root/tmp", "symlinkEscapes"},
        {"~/to root" + inHome("real/folder").path(), allowed},
        {"~/to root" + disk.path("home").path(), "symlinkEscapes"},
        {"~/in", allowed},
        {"~/in/folder", allowed},
        {"~/in/folder/a", allowed},
        {"~/in by dots/folder", allowed},
        {"~/into temporary/a", allowed},
        {"~/chain", allowed},
        {"~/chain/folder", "symlinkEscapes"},
        {"~/chain in/folder", allowed},
        {"~/circle", allowed},
        {"~/circle/a", "symlinkEscapes"},
        {"~/dangling", allowed},
        {"~/dangling/a", allowed},
        {"~/dangling out", allowed},
        {"~/dangling out/a", "symlinkEscapes"},
        {"~/back/folder", allowed},
        {"~/file/a", allowed},
        {disk.path("temporary/out/a").path(), "symlinkEscapes"},
        {disk.path("real temporary/out/a").path(), "symlinkEscapes"},
        {disk.path("real temporary/out").path(), allowed},
    };
    for (const auto& [path, expected] : cases)
        for (const bool isProjectItem : {false, true})
            EXPECT_EQ(judged(path, isProjectItem), expected) << path;
}

TEST_F(PathPolicyTest, LinksInsideTheHomeOpenNoForbiddenPlace) {
    disk.file("home/.ssh/keys/id");
    disk.folder("home/excluded/folder");
    disk.folder("home/code/app/build");
    disk.folder("home/repository/.git/objects");
    disk.folder("home/Library/Caches/a");
    disk.link("home/to ssh", ".ssh");
    disk.link("home/to keys", ".ssh/keys");
    disk.link("home/to excluded", "excluded/folder");
    disk.link("home/to app", "code/app");
    disk.link("home/to build", "code/app/build");
    disk.link("home/to objects", "repository/.git/objects");
    disk.link("home/to home", ".");
    disk.link("home/to Library", "Library");
    const PathPolicy by = policy({inHome("code/app")}, {inHome("excluded")});
    const struct {
        const char* path;
        const char* expected;
        const char* asProjectItem;
    } cases[] = {
        {"~/to ssh", allowed, allowed},
        {"~/to ssh/keys", "protectedPath", "protectedPath"},
        {"~/to ssh/missing", "protectedPath", "protectedPath"},
        {"~/to keys/id", "protectedPath", "protectedPath"},
        {"~/to excluded", allowed, allowed},
        {"~/to excluded/a", "protectedPath", "protectedPath"},
        {"~/to app", allowed, allowed},
        {"~/to app/build", "projectNotOptedIn", allowed},
        {"~/to build/a", "projectNotOptedIn", allowed},
        {"~/to objects/a", "protectedName", "protectedName"},
        {"~/to home", allowed, allowed},
        {"~/to home/.ssh", "protectedPath", "protectedPath"},
        {"~/to home/Library", "containerItself", "containerItself"},
        {"~/to home/code/app", "projectNotOptedIn", allowed},
        {"~/to Library/Caches", "containerItself", "containerItself"},
        {"~/to Library/Caches/a", allowed, allowed},
    };
    for (const auto& [path, expected, asProjectItem] : cases) {
        EXPECT_EQ(judged(by, path), expected) << path;
        EXPECT_EQ(judged(by, path, true), asProjectItem) << path;
    }
}

TEST_F(PathPolicyTest, WhatAForbiddenLinkLeadsToIsForbiddenToo) {
    disk.file("home/dotfiles/ssh/id");
    disk.link("home/.ssh", "dotfiles/ssh");
    disk.folder("home/big/downloads/a");
    disk.link("home/Downloads", "big/downloads");
    disk.folder("home/elsewhere/project/build");
    disk.link("home/project", "elsewhere/project");
    const PathPolicy by = policy({inHome("project")}, {});
    const Case cases[] = {
        {"~/.ssh", "protectedPath"},
        {"~/dotfiles/ssh", "protectedPath"},
        {"~/dotfiles/ssh/id", "protectedPath"},
        {"~/big/downloads", "containerItself"},
        {"~/big/downloads/a", allowed},
        {"~/Downloads/a", allowed},
        {"~/elsewhere/project", "projectNotOptedIn"},
        {"~/elsewhere/project/build", "projectNotOptedIn"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(judged(by, path), expected) << path;
    EXPECT_EQ(judged(by, "~/elsewhere/project/build", true), allowed);
}

// To remove a folder is to remove what is in it.
TEST_F(PathPolicyTest, AFolderThatHoldsWhatMustStayStaysToo) {
    disk.folder("home/Library/Application Support/Claude/vm_bundles");
    disk.folder("home/Library/Application Support/Claude/Cache");
    disk.folder("home/.cache/a/excluded");
    disk.file("home/.cache/b/excluded file");
    disk.folder("home/code/app/build");
    disk.folder("home/linked/to/secret");
    disk.link("home/linked/from", "to/secret");
    disk.folder("home/place of link");
    disk.link("home/place of link/excluded", "../nowhere");
    disk.folder("home/to/big/downloads");
    disk.link("home/Downloads", "to/big/downloads");
    const PathPolicy by =
        policy({inHome("code/app")}, {inHome(".cache/a/excluded"), inHome(".cache/b/excluded file"),
                                      inHome("linked/from"), inHome("place of link/excluded")});
    const struct {
        const char* path;
        const char* expected;
        const char* asProjectItem;
    } cases[] = {
        {"~/Library/Application Support/Claude", "protectedPath", "protectedPath"},
        {"~/Library/Application Support/Claude/Cache", allowed, allowed},
        {"~/.cache", "protectedPath", "protectedPath"},
        {"~/.cache/a", "protectedPath", "protectedPath"},
        {"~/.cache/b", "protectedPath", "protectedPath"},
        {"~/.cache/b/other file", allowed, allowed},
        {"~/linked", "protectedPath", "protectedPath"},
        {"~/linked/to", "protectedPath", "protectedPath"},
        {"~/place of link", "protectedPath", "protectedPath"},
        {"~/to", "containerItself", "containerItself"},
        {"~/to/big", "containerItself", "containerItself"},
        {"~/code", "projectNotOptedIn", allowed},
        {"~/code/app/build", "projectNotOptedIn", allowed},
    };
    for (const auto& [path, expected, asProjectItem] : cases) {
        EXPECT_EQ(judged(by, path), expected) << path;
        EXPECT_EQ(judged(by, path, true), asProjectItem) << path;
    }
}

TEST_F(PathPolicyTest, RootsThemselvesStayAndWhatHoldsThem) {
    disk.folder("outside/home");
    disk.folder("outside/home/.local/tmp/a");
    // The home folder lies in the temporary one; and the temporary one in the home folder.
    const PathPolicy inside(disk.path("outside/home"), disk.url(), {}, {});
    EXPECT_EQ(verdict(inside, disk.path("outside")), "containerItself");
    EXPECT_EQ(verdict(inside, disk.path("outside/home")), "containerItself");
    EXPECT_EQ(verdict(inside, disk.path("outside/a")), allowed);
    const PathPolicy around(disk.path("outside/home"), disk.path("outside/home/.local/tmp"), {},
                            {});
    EXPECT_EQ(verdict(around, disk.path("outside/home/.local/tmp")), "containerItself");
    EXPECT_EQ(verdict(around, disk.path("outside/home/.local")), "containerItself");
    EXPECT_EQ(verdict(around, disk.path("outside/home/.local/tmp/a")), allowed);
    EXPECT_EQ(judged(disk.path("temporary").path()), "symlinkEscapes");
    EXPECT_EQ(judged(disk.path("real temporary").path()), "symlinkEscapes");
}

TEST_F(PathPolicyTest, TheWholeDiskIsNoRoot) {
    const URL item = disk.path("outside/a");
    disk.folder("outside/a");
    disk.link("link to all", "/");
    for (const char* spelling : {"/", "", "//", "/..", "."}) {
        EXPECT_EQ(verdict(PathPolicy(URL(spelling), disk.path("temporary"), {}, {}), item),
                  "outsideAllowedRoots");
        EXPECT_EQ(verdict(PathPolicy(disk.path("home"), URL(spelling), {}, {}), item),
                  "outsideAllowedRoots");
    }
    const PathPolicy linked(disk.path("link to all"), disk.path("link to all"), {}, {});
    EXPECT_EQ(verdict(linked, item), "outsideAllowedRoots");
    EXPECT_EQ(verdict(linked, URL(disk.path("link to all").path() + item.path())),
              "symlinkEscapes");
}

TEST_F(PathPolicyTest, AHomeBehindALinkIsAHome) {
    disk.folder("home/.cache/a");
    disk.file("home/.ssh/id");
    disk.folder("home/excluded/a");
    disk.folder("home/Projects/app/build");
    disk.link("home/to ssh", ".ssh");
    disk.link("home/out", "../outside");
    disk.link("home/absolute", disk.path("linked/.cache").path());
    disk.link("linked", "second link");
    disk.link("second link", disk.path("home").path());
    const PathPolicy by(disk.path("linked"), disk.path("temporary"),
                        {disk.path("linked/Projects/app")}, {disk.path("linked/excluded")});
    const Case cases[] = {
        {"", "containerItself"},
        {"/Library", "containerItself"},
        {"/.cache", allowed},
        {"/.cache/a", allowed},
        {"/absolute/a", allowed},
        {"/missing/a", allowed},
        {"/.ssh/id", "protectedPath"},
        {"/to ssh/id", "protectedPath"},
        {"/excluded/a", "protectedPath"},
        {"/Projects/app/build", "projectNotOptedIn"},
        {"/out/a", "symlinkEscapes"},
        {"/a.pem", "protectedName"},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(verdict(by, URL(disk.path("linked").path() + path)), expected) << path;
    // Its real location was not allowed, and is not what the items are given by.
    EXPECT_EQ(judged(by, "~/.cache"), "outsideAllowedRoots");
    EXPECT_EQ((*by.validate(disk.path("linked/.cache/a"), false)->folder())->path(),
              inHome(".cache"));
}

TEST_F(PathPolicyTest, AFolderThatMayNotBeSearchedIsNotJudged) {
    disk.setMode("", 0755);
    disk.folder("home/closed/a");
    disk.setMode("home/closed", 0644);
    const auto answer = [&] { return judged("~/closed") + " " + judged("~/closed/a/b"); };
    EXPECT_EQ(test::asOrdinaryUser(answer), "allowed symlinkEscapes");
    disk.setMode("home/closed", 0755);
}

TEST_F(PathPolicyTest, ForbiddenPlacesAreKnownWhereTheyAreMountedAgain) {
    disk.file("home/.ssh/id");
    disk.folder("home/Library/Caches/a");
    disk.folder("home/code/app/build");
    disk.folder("home/excluded/inner/around");
    const PathPolicy by = policy({inHome("code/app")}, {inHome("excluded")});
    const URL ssh = disk.folder("home/mounted/ssh");
    const URL all = disk.folder("home/mounted/home");
    const URL around = inHome("excluded/inner/around");
    disk.link("home/to around", "excluded/inner/around");
    const auto answer = test::withOwnMounts([&]() -> std::string {
        if (!test::mountAgain(inHome(".ssh"), ssh) || !test::mountAgain(disk.path("home"), all) ||
            !test::mountAgain(inHome("excluded/inner"), around))
            return "not mounted";
        std::string verdicts;
        for (const char* path :
             {"~/mounted/ssh", "~/mounted/ssh/id", "~/mounted/home", "~/mounted/home/Library",
              "~/mounted/home/.ssh", "~/mounted/home/.ssh/id", "~/mounted/home/code/app/build",
              "~/mounted/home/Library/Caches/a", "~/to around/a"})
            verdicts += judged(by, path) + "\n";
        return verdicts;
    });
    if (!answer)
        GTEST_SKIP() << test::mountsRefused;
    EXPECT_EQ(*answer, "protectedPath\nprotectedPath\ncontainerItself\ncontainerItself\n"
                       "protectedPath\nprotectedPath\nprojectNotOptedIn\nallowed\n"
                       "protectedPath\n");
}

TEST_F(PathPolicyTest, PathsOfOneFolderShareIt) {
    disk.folder("home/a");
    disk.folder("home/b");
    disk.link("home/link", "a");
    const std::vector<URL> urls{inHome("a/1"), inHome("b/1"), inHome("a/2"), inHome("a//3/"),
                                inHome("missing/1")};
    const auto approved = policy().validate(urls, false);
    ASSERT_TRUE(approved);
    ASSERT_EQ(approved->size(), urls.size());
    for (std::size_t i = 0; i < urls.size(); ++i)
        EXPECT_EQ((*approved)[i].url(), urls[i].standardized());
    EXPECT_EQ(*(*approved)[0].folder(), *(*approved)[2].folder());
    EXPECT_EQ(*(*approved)[0].folder(), *(*approved)[3].folder());
    EXPECT_NE(*(*approved)[0].folder(), *(*approved)[1].folder());
    EXPECT_FALSE((*approved)[4].folder());
}

TEST_F(PathPolicyTest, TheFirstForbiddenOfSeveralIsTold) {
    const std::vector<URL> urls{inHome("a"), inHome(".ssh"), inHome("Library"), inHome("b")};
    EXPECT_EQ(policy().validate(urls, false).error(),
              (PolicyViolation{Kind::protectedPath, inHome(".ssh").path()}));
    EXPECT_TRUE(policy().validate(std::vector<URL>(), false)->empty());
}

bool allowFewDescriptors() {
    const rlimit limit{64, 64};
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

TEST_F(PathPolicyTest, ManyPathsNeedFewDescriptors) {
    constexpr int folders = 5000;
    const TempHome memory(TempHome::Place::memory);
    std::vector<URL> urls;
    for (int i = 0; i < folders; ++i)
        urls.push_back(memory.folder(fmt::format("home/many/{}/item", i)));
    const URL one = memory.folder("home/one");
    for (int i = 0; i < 100'000; ++i)
        urls.push_back(one.appending(std::to_string(i)));
    memory.file("home/one/7");
    const PathPolicy by(memory.path("home"), memory.folder("temporary"), {}, {});
    const auto answer = test::forkedAnswer(allowFewDescriptors, [&]() -> std::string {
        const auto approved = by.validate(urls, false);
        if (!approved)
            return approved.error().errorDescription();
        int unusable = 0;
        int items = 0;
        for (const ApprovedPath& path : *approved) {
            unusable += path.folder() && (*path.folder())->reopen() ? 0 : 1;
            items += path.item() ? 1 : 0;
        }
        return fmt::format("{} paths, {} unusable, {} items", approved->size(), unusable, items);
    });
    EXPECT_EQ(answer, fmt::format("{} paths, 0 unusable, {} items", urls.size(), folders + 1));
}

bool allowNoMoreDescriptors() {
    const FileDescriptor next(dup(STDIN_FILENO));
    const auto used = static_cast<rlim_t>(next.get());
    const rlimit limit{used, used};
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

TEST_F(PathPolicyTest, WithoutDescriptorsNothingCanBeDone) {
    disk.folder("home/a");
    const auto answer = test::forkedAnswer(allowNoMoreDescriptors, [&]() -> std::string {
        const auto approved = policy().validate(inHome("a"), false);
        return !approved || !approved->folder() ? "refused" : "permitted";
    });
    EXPECT_EQ(answer, "refused");
}

TEST_F(PathPolicyTest, ManyThreadsMayAsk) {
    disk.folder("home/.cache/a");
    disk.link("home/out", "../outside");
    disk.link("home/to ssh", ".ssh");
    disk.file("home/.ssh/id");
    const PathPolicy by = policy({inHome("code")}, {inHome("excluded")});
    const std::vector<Case> cases{
        {"~/.cache/a", allowed},           {"~/Library", "containerItself"},
        {"~/out/a", "symlinkEscapes"},     {"~/to ssh/id", "protectedPath"},
        {"~/code/a", "projectNotOptedIn"}, {"~/\u212AEYSTORES", "protectedName"},
    };
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            for (std::size_t round = 0; round < 60; ++round) {
                const auto& [path, expected] = cases[(round + i) % cases.size()];
                EXPECT_EQ(judged(by, path), expected) << path;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(PathPolicyTest, NothingIsChanged) {
    disk.folder("home/.cache/a");
    disk.file("home/.ssh/id", "secret");
    disk.link("home/out", "../outside");
    disk.link("home/in", ".cache");
    disk.link("home/circle", "circle");
    const auto ask = [&] {
        const PathPolicy by = policy({inHome("code")}, {inHome(".cache/a/b")});
        for (const char* path :
             {"~", "~/.cache", "~/.cache/a", "~/in/a", "~/in", "~/out", "~/out/a", "~/circle/a",
              "~/missing/a/b", "~/.ssh/id", "~/code", "/", "~/a.pem"})
            for (const bool isProjectItem : {false, true})
                judged(by, path, isProjectItem);
    };
    // The system notes when a link or a file was read first, but not each time.
    ask();
    disk.snapshot();
    const std::string before = disk.snapshot();
    ask();
    EXPECT_EQ(disk.snapshot(), before);
}

} // namespace

} // namespace tidewright

// Any bytes as a path, over a small home folder full of links: what the policy permits is looked at
// by other means, and the program stops where it should have been refused.
//
// The first byte of an input chooses whether the path is of a project's item (bit 0) and whether
// the home folder is given by a link (bit 1). The rest is the path; "~" at its beginning stands
// for the home folder, "^" for the temporary one.
#include "core/cleaning/PathPolicy.h"

#include <fnmatch.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using namespace tidewright;

[[noreturn]] void stop(const std::string& harm, const std::string& path) {
    std::fprintf(stderr, "%s: \"%s\"\n", harm.c_str(), path.c_str());
    std::abort();
}

constexpr const char* files[] = {
    "home/.ssh/id",
    "home/.ssh/keys/id",
    "home/.gnupg/a",
    "home/Library/Keychains/a",
    "home/Library/Caches/a/b",
    "home/Library/Application Support/Claude/vm_bundles/a",
    "home/Library/Application Support/Claude/Cache/a",
    "home/Library/Developer/Xcode/DerivedData/a",
    "home/Downloads/a.zip",
    "home/Documents/.env.local",
    "home/.cache/a/excluded/b",
    "home/.cache/b",
    "home/code/app/build/a",
    "home/code/app/.git/config",
    "home/code/key.PEM",
    "home/a/b/c",
    "real temporary/a/b",
    "outside/a/b",
};

struct SymbolicLink {
    const char* path;
    const char* target;
};
constexpr SymbolicLink links[] = {
    {"linked home", "home"},
    {"temporary", "real temporary"},
    {"home/s", ".ssh"},
    {"home/k", ".ssh/keys"},
    {"home/o", "../outside"},
    {"home/r", "/"},
    {"home/u", ".."},
    {"home/h", "."},
    {"home/e", ".cache/a/excluded"},
    {"home/p", "code/app"},
    {"home/g", "code/app/.git"},
    {"home/q", "q"},
    {"home/d", "missing/x"},
    {"home/t", "../temporary"},
    {"home/L", "Library/../Library"},
    {"home/n", "u/linked home/a"},
    {"home/a/o", "../../outside/back/o"},
    {"home/a/x", "b/../../k"},
    {"home/Music", "a/b"},
    {"outside/back", "../home"},
    {"real temporary/o", "../outside"},
    {"real temporary/h", "../home"},
};

// In the home folder: what must survive with everything in it, and what must stay itself.
constexpr const char* forbidden[] = {
    ".ssh",
    ".gnupg",
    "Library/Keychains",
    "Library/Application Support/Claude/vm_bundles",
    ".cache/a/excluded",
};
constexpr const char* containers[] = {
    "",          "Library",   "Library/Caches", "Library/Application Support", "Library/Developer",
    "Downloads", "Documents", "Music",          "Library/Developer/Xcode",
};
constexpr const char* project = "code/app";

constexpr const char* protectedPatterns[] = {
    ".git",  ".hg",        ".svn",   "key_stores", "keystores",
    ".env",  "*.keystore", "*.jks",  "*.p12",      "*.mobileprovision",
    "*.pem", "*.p8",       ".env.*",
};

/// Component by component.
bool isInside(const fs::path& path, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
           folder.end();
}

bool hasProtectedName(const fs::path& path) {
    for (const fs::path& component : path)
        for (const char* pattern : protectedPatterns)
            if (fnmatch(pattern, component.c_str(), FNM_CASEFOLD) == 0)
                return true;
    return false;
}

/// As the system finds it; absent where it does not.
std::optional<fs::path> realPath(const fs::path& path) {
    char* const real = realpath(path.c_str(), nullptr);
    if (real == nullptr)
        return std::nullopt;
    const fs::path result(real);
    std::free(real); // NOLINT(cppcoreguidelines-no-malloc): realpath(3) asks for it
    return result;
}

class Tree {
public:
    Tree() {
        std::string pattern = "/var/tmp/tidewright-fuzz-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            stop("no temporary folder", pattern);
        m_root = pattern;
        for (const char* file : files) {
            fs::create_directories((m_root / file).parent_path());
            std::ofstream(m_root / file) << file;
        }
        for (const auto& [path, target] : links)
            fs::create_symlink(target, m_root / path);
        m_state = state();
    }
    ~Tree() {
        expectUnchanged("");
        fs::remove_all(m_root);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    fs::path operator/(const char* path) const { return m_root / path; }

    PathPolicy policy(const char* home) const {
        const fs::path folder = m_root / home;
        return PathPolicy(URL(folder.string()), URL(m_root / "temporary"), {URL(folder / project)},
                          {URL(folder / ".cache/a/excluded")});
    }

    void expectUnchanged(const std::string& path) const {
        if (state() != m_state)
            stop("the tree was changed", path);
    }

private:
    std::string state() const {
        std::string result;
        for (const auto& entry : fs::recursive_directory_iterator(m_root)) {
            struct stat status = {};
            lstat(entry.path().c_str(), &status);
            for (const auto number :
                 {static_cast<long>(status.st_ino), static_cast<long>(status.st_mode),
                  static_cast<long>(status.st_size), static_cast<long>(status.st_ctim.tv_sec),
                  static_cast<long>(status.st_ctim.tv_nsec)})
                result += std::to_string(number) + " ";
            result += entry.path().string() + "\n";
        }
        return result;
    }

    fs::path m_root;
    std::string m_state;
};

std::string standardized(const std::string& path) {
    // From a second slash on, the system may mean something of its own by "//".
    std::string normal = ("/" + path).substr(path.starts_with('/') ? 1 : 0);
    normal.erase(0, std::min(normal.find_first_not_of('/'), normal.size()));
    normal = fs::path("/" + normal).lexically_normal().string();
    if (normal.size() > 1 && normal.ends_with('/'))
        normal.pop_back();
    return normal;
}

/// What removing it would do, judged by what the system says of it alone.
void expectHarmless(const ApprovedPath& approved, const Tree& tree, bool isProjectItem) {
    const std::string& path = approved.url().path();
    if (path.find('\0') != std::string::npos)
        stop("a zero byte was permitted", path);
    if (hasProtectedName(path))
        stop("a protected name was permitted", path);
    const auto parent = realPath(fs::path(path).parent_path());
    if (!parent || !fs::is_directory(*parent)) {
        if (approved.folder())
            stop("a folder was found where there is none", path);
        return;
    }
    const fs::path item = *parent / fs::path(path).filename();
    if (!isInside(item, tree / "home") && !isInside(item, tree / "real temporary"))
        stop("what is outside was permitted", path);
    if (hasProtectedName(item))
        stop("what really has a protected name was permitted", path);

    const fs::path home = tree / "home";
    for (const char* place : forbidden)
        if (isInside(item, home / place) || isInside(home / place, item))
            stop("what is never touched was permitted", path);
    for (const char* place : containers)
        if (isInside(*realPath(home / place), item))
            stop("a container was permitted", path);
    if (!isProjectItem && (isInside(item, home / project) || isInside(home / project, item)))
        stop("a project was permitted", path);

    struct stat status = {};
    const bool exists = lstat(item.c_str(), &status) == 0;
    if (!approved.folder() || (*approved.folder())->path().path() != parent->string())
        stop("it would be removed from another folder", path);
    if (approved.item().has_value() != exists ||
        (exists && approved.item()->inode != status.st_ino))
        stop("something else would be removed", path);
}

void judge(const PathPolicy& policy,
           const Tree& tree,
           const std::string& path,
           bool isProjectItem) {
    const auto result = policy.validate(URL(path), isProjectItem);
    const std::string& judged = result ? result->url().path() : result.error().path;
    if (judged != standardized(path))
        stop("another path was judged", path);
    if (result)
        expectHarmless(*result, tree, isProjectItem);
    else if (result.error().errorDescription().empty())
        stop("nothing was said", path);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Tree tree;
    static const PathPolicy direct = tree.policy("home");
    static const PathPolicy linked = tree.policy("linked home");
    static unsigned executions = 0;
    if (size == 0)
        return 0;
    const bool isProjectItem = (data[0] & 1) != 0;
    const PathPolicy& policy = (data[0] & 2) != 0 ? linked : direct;
    std::string path(data + 1, data + size);
    if (path.starts_with('~'))
        path.replace(0, 1, policy.home.path());
    else if (path.starts_with('^'))
        path.replace(0, 1, tree / "temporary");
    judge(policy, tree, path, isProjectItem);
    if (++executions % 64 == 0)
        tree.expectUnchanged(path);
    return 0;
}

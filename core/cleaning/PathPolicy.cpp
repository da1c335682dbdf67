#include "core/cleaning/PathPolicy.h"

#include "core/platform/ResolvedLinks.h"
#include "core/support/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>

namespace tidewright {

namespace {

// "~" stands for the text of the home folder's path.
constexpr std::array neverTouched{
    "/System",
    "/usr",
    "/bin",
    "/sbin",
    "/private/var/vm",
    "/Library/Keychains",
    "/Applications",
    "~/Library/Keychains",
    "~/Library/Mobile Documents",
    "~/Library/CloudStorage",
    "~/Library/Mail",
    "~/Library/Messages",
    "~/Library/Photos",
    "~/Library/Application Support/Claude/vm_bundles",
    "~/Library/Application Support/com.apple.TCC",
    "~/Library/Group Containers",
    "~/Pictures/Photos Library.photoslibrary",
    "~/.ssh",
    "~/.gnupg",
};
constexpr std::array containersInHome{
    "~",
    "~/Library",
    "~/Library/Caches",
    "~/Library/Application Support",
    "~/Library/Logs",
    "~/Library/Developer",
    "~/Library/Containers",
    "~/Library/Preferences",
    "~/Documents",
    "~/Desktop",
    "~/Downloads",
    "~/Movies",
    "~/Music",
    "~/Pictures",
    "~/.Trash",
    "~/.gradle",
    "~/.android",
    "~/.npm",
    "~/Library/Android",
    "~/Library/Android/sdk",
    "~/Library/Developer/Xcode",
};

// Of a component in lower case.
constexpr std::array protectedNames{".git", ".hg", ".svn", "key_stores", "keystores", ".env"};
constexpr std::array protectedEndings{".keystore",        ".jks", ".p12",
                                      ".mobileprovision", ".pem", ".p8"};
constexpr const char* protectedBeginning = ".env.";

// Folders beyond these are told by device and inode alone, so that descriptors suffice.
constexpr std::size_t foldersHeldOpen = 32;

std::string expanded(std::string_view path, const URL& home) {
    return path.starts_with('~') ? home.path() + std::string(path.substr(1)) : std::string(path);
}

template <class Paths>
std::vector<std::string> allExpanded(const Paths& paths, const URL& home) {
    std::vector<std::string> result;
    for (const char* path : paths)
        result.push_back(expanded(path, home));
    return result;
}

std::set<std::string> asSet(std::vector<std::string> list) {
    return {std::make_move_iterator(list.begin()), std::make_move_iterator(list.end())};
}

std::vector<URL> allStandardized(const std::vector<URL>& urls) {
    std::vector<URL> result;
    for (const URL& url : urls)
        result.push_back(url.standardized());
    return result;
}

/// As text where nobody can tell: it then stands for itself.
URL resolvedOrSame(const URL& url) { return resolvedLinks(url).value_or(url); }

/// Exactly and as text.
bool isInside(std::string_view path, std::string_view root) {
    if (!path.starts_with(root))
        return false;
    return path.size() == root.size() || root.ends_with('/') || path[root.size()] == '/';
}

bool isInsideAny(const URL& url, const std::vector<URL>& roots) {
    return std::ranges::any_of(roots,
                               [&](const URL& root) { return isInside(url.path(), root.path()); });
}

/// The whole disk is nobody's home and no temporary folder: such a root permits nothing.
bool isInsideAnyRoot(const URL& url, const std::vector<URL>& roots) {
    return std::ranges::any_of(roots, [&](const URL& root) {
        return root.path() != "/" && isInside(url.path(), root.path());
    });
}

bool isProtectedInLowerCase(std::string_view name) {
    return std::ranges::find(protectedNames, name) != protectedNames.end() ||
           std::ranges::any_of(protectedEndings,
                               [&](const char* ending) { return name.ends_with(ending); }) ||
           name.starts_with(protectedBeginning);
}

/// Also a name that only some file systems take for a protected one.
bool isProtected(std::string_view component) {
    return isProtectedInLowerCase(lowercased(component)) ||
           isProtectedInLowerCase(caseFolded(component));
}

/// Places that are recognised by device and inode under whatever path they are met.
class Places {
public:
    /// What stands there just now, as a link and as what the link leads to, and the folders above
    /// both. Fails where those can't be told.
    Result<void, SystemError> add(const URL& place) {
        const std::size_t before = m_places.size();
        for (const Links links : {Links::dontFollow, Links::follow})
            if (const auto info = fileInfo(place, links))
                m_places.insert(info->identity());
        if (m_places.size() == before)
            return {}; // nothing is there, or it is known with all above it
        for (const URL& folder : {resolvedOrSame(place.deletingLastPathComponent()),
                                  resolvedOrSame(place).deletingLastPathComponent()})
            if (auto added = addWithFoldersAbove(folder); !added)
                return added;
        return {};
    }

    bool contains(const FileIdentity& identity) const { return m_places.contains(identity); }
    bool containsAny(const std::vector<FileIdentity>& identities) const {
        return std::ranges::any_of(identities,
                                   [&](const FileIdentity& each) { return contains(each); });
    }
    /// Whether it is one of the places or a folder that has one in it, however deep.
    bool wouldLoseOne(const FileIdentity& item) const {
        return contains(item) || m_foldersAbove.contains(item);
    }

private:
    Result<void, SystemError> addWithFoldersAbove(const URL& folder) {
        if (!m_foldersDone.insert(folder).second)
            return {};
        const auto judged = JudgedFolder::open(folder, JudgedFolder::Hold::byIdentity);
        if (judged)
            m_foldersAbove.insert((*judged)->lineage().begin(), (*judged)->lineage().end());
        else if (judged.error().code != ENOENT && judged.error().code != ENOTDIR)
            return Failure(judged.error());
        return {};
    }

    std::set<FileIdentity> m_places;
    std::set<FileIdentity> m_foldersAbove;
    std::set<URL> m_foldersDone;
};

} // namespace

std::string PolicyViolation::errorDescription() const {
    switch (kind) {
    case Kind::protectedPath:
        return path + " is on the never-touch list.";
    case Kind::protectedName:
        return path + " looks like source control, signing keys or secrets.";
    case Kind::containerItself:
        return path + " is a top-level folder; only items inside it can be cleaned.";
    case Kind::outsideAllowedRoots:
        return path + " is outside the folders Tidewright is allowed to clean.";
    case Kind::symlinkEscapes:
        return path + " resolves to a location outside the allowed folders.";
    case Kind::projectNotOptedIn:
        break;
    }
    return path + " is inside a project and was not explicitly selected.";
}

PathPolicy::PathPolicy(const URL& homeFolder,
                       const URL& temporaryDirectory,
                       const std::vector<URL>& projects,
                       const std::vector<URL>& exclusions)
    : home(homeFolder.standardized()),
      allowedRoots{home, temporaryDirectory.standardized(),
                   resolvedOrSame(temporaryDirectory.standardized())},
      projectRoots(allStandardized(projects)),
      userExclusions(allStandardized(exclusions)),
      neverTouchPrefixes(allExpanded(neverTouched, home)),
      containers(asSet(allExpanded(containersInHome, home))) {}

bool PathPolicy::hasProtectedComponent(const URL& url) {
    const auto components = splitDroppingEmpty(url.path(), '/');
    return std::ranges::any_of(components, isProtected);
}

/// Judges any number of paths at one moment: what all of them need is looked up once.
class PathPolicy::Judgement {
public:
    Judgement(const PathPolicy& policy, bool isProjectItem)
        : m_policy(policy),
          m_isProjectItem(isProjectItem) {
        for (const URL& root : policy.allowedRoots)
            m_realRoots.push_back(resolvedOrSame(root));
        m_realRoots.insert(m_realRoots.end(), policy.allowedRoots.begin(),
                           policy.allowedRoots.end());
        for (const std::string& path : policy.neverTouchPrefixes)
            add(m_neverTouched, URL(path));
        for (const URL& exclusion : policy.userExclusions)
            add(m_neverTouched, exclusion);
        add(m_containers, URL("/"));
        for (const std::string& path : policy.containers)
            add(m_containers, URL(path));
        for (const URL& root : policy.allowedRoots)
            add(m_containers, root);
        if (!isProjectItem)
            for (const URL& root : policy.projectRoots)
                add(m_projects, root);
    }

    Result<ApprovedPath, PolicyViolation> of(const URL& given) {
        const URL url = given.standardized();
        const auto refused = [&](Kind kind) { return Failure(PolicyViolation{kind, url.path()}); };
        if (const auto kind = violationOfText(url))
            return refused(*kind);
        const Parent& parent = parentOf(url);
        if (parent.escapes)
            return refused(Kind::symlinkEscapes);
        if (!m_isProjectItem && isInsideAny(url, m_policy.projectRoots))
            return refused(Kind::projectNotOptedIn);
        if (parent.violation)
            return refused(*parent.violation);

        const auto item = entryOf(parent, url.lastPathComponent());
        if (!item)
            return ApprovedPath(url, Failure(item.error()), std::nullopt);
        if (const auto kind = item->has_value() ? violationOfItem(**item) : std::nullopt)
            return refused(*kind);
        return ApprovedPath(url, parent.folder, *item);
    }

private:
    using Kind = PolicyViolation::Kind;

    /// The folder of an item, or of several.
    struct Parent {
        bool escapes = false;
        /// By where it really lies, whatever its path says; and so of all that is in it.
        std::optional<Kind> violation;
        Result<std::shared_ptr<const JudgedFolder>, SystemError> folder = nullptr;
    };

    void add(Places& places, const URL& place) {
        if (const auto added = places.add(place); !added)
            m_obstacle = added.error();
    }

    /// The rules about the path as it is written, in their order, up to that about links.
    std::optional<Kind> violationOfText(const URL& url) const {
        const std::string& path = url.path();
        if (m_policy.containers.contains(path) || path == "/")
            return Kind::containerItself;
        for (const std::string& prefix : m_policy.neverTouchPrefixes)
            if (isInside(path, prefix))
                return Kind::protectedPath;
        if (isInsideAny(url, m_policy.userExclusions))
            return Kind::protectedPath;
        if (hasProtectedComponent(url))
            return Kind::protectedName;
        // No file can have a name with such a byte, at which the system's calls would stop reading.
        if (!isInsideAnyRoot(url, m_policy.allowedRoots) || path.find('\0') != std::string::npos)
            return Kind::outsideAllowedRoots;
        return std::nullopt;
    }

    const Parent& parentOf(const URL& url) {
        const auto [position, isNew] = m_parents.try_emplace(url.deletingLastPathComponent());
        if (isNew)
            find(position->second, position->first);
        return position->second;
    }

    void find(Parent& parent, const URL& folder) const {
        const auto real = resolvedLinks(folder);
        parent.escapes = !real || !isInsideAnyRoot(*real, m_realRoots);
        if (parent.escapes)
            return;
        const auto hold = m_parents.size() <= foldersHeldOpen ? JudgedFolder::Hold::open
                                                              : JudgedFolder::Hold::byIdentity;
        parent.folder = JudgedFolder::open(*real, hold);
        parent.violation = violationOfFolder(*real, parent);
    }

    std::optional<Kind> violationOfFolder(const URL& real, const Parent& parent) const {
        if (hasProtectedComponent(real))
            return Kind::protectedName;
        if (!parent.folder)
            return std::nullopt; // nothing can be done there
        if (m_neverTouched.containsAny((*parent.folder)->lineage()))
            return Kind::protectedPath;
        if (m_projects.containsAny((*parent.folder)->lineage()))
            return Kind::projectNotOptedIn;
        return std::nullopt;
    }

    /// Of an item in a folder that may be touched: it must neither be nor hold what has to stay.
    std::optional<Kind> violationOfItem(const FileIdentity& item) const {
        if (m_containers.wouldLoseOne(item))
            return Kind::containerItself;
        if (m_neverTouched.wouldLoseOne(item))
            return Kind::protectedPath;
        if (m_projects.wouldLoseOne(item))
            return Kind::projectNotOptedIn;
        return std::nullopt;
    }

    /// What stands there now. Fails where nothing may be done because not all could be looked at.
    Result<std::optional<FileIdentity>, SystemError> entryOf(const Parent& parent,
                                                             const std::string& name) const {
        if (m_obstacle)
            return Failure(*m_obstacle);
        if (!parent.folder)
            return Failure(parent.folder.error());
        return (*parent.folder)->entry(name);
    }

    const PathPolicy& m_policy;
    bool m_isProjectItem;
    std::vector<URL> m_realRoots; ///< and after them the roots as they are written
    Places m_neverTouched;
    Places m_containers;
    Places m_projects; ///< none where they may be touched
    std::optional<SystemError> m_obstacle;
    std::map<URL, Parent> m_parents;
};

Result<ApprovedPath, PolicyViolation> PathPolicy::validate(const URL& url,
                                                           bool isProjectItem) const {
    return Judgement(*this, isProjectItem).of(url);
}

Result<std::vector<ApprovedPath>, PolicyViolation> PathPolicy::validate(std::span<const URL> urls,
                                                                        bool isProjectItem) const {
    Judgement judgement(*this, isProjectItem);
    std::vector<ApprovedPath> approved;
    approved.reserve(urls.size());
    for (const URL& url : urls) {
        auto result = judgement.of(url);
        if (!result)
            return Failure(std::move(result.error()));
        approved.push_back(std::move(*result));
    }
    return approved;
}

bool PathPolicy::isAllowed(const URL& url, bool isProjectItem) const {
    return validate(url, isProjectItem).has_value();
}

} // namespace tidewright

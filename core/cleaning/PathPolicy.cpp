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

bool isProtected(std::string_view component) {
    const std::string name = lowercased(component);
    return std::ranges::find(protectedNames, name) != protectedNames.end() ||
           std::ranges::any_of(protectedEndings,
                               [&](const char* ending) { return name.ends_with(ending); }) ||
           name.starts_with(protectedBeginning);
}

/// What stands at a place just now, as a link and as what the link leads to.
void addIdentities(std::set<FileIdentity>& identities, const URL& place) {
    for (const Links links : {Links::dontFollow, Links::follow})
        if (const auto info = fileInfo(place, links))
            identities.insert(info->identity());
}

bool holdsAny(const std::set<FileIdentity>& places, const std::vector<FileIdentity>& identities) {
    return std::ranges::any_of(identities,
                               [&](const FileIdentity& each) { return places.contains(each); });
}

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
            addIdentities(m_neverTouched, URL(path));
        for (const URL& exclusion : policy.userExclusions)
            addIdentities(m_neverTouched, exclusion);
        addIdentities(m_containers, URL("/"));
        for (const std::string& path : policy.containers)
            addIdentities(m_containers, URL(path));
        for (const URL& root : policy.projectRoots)
            addIdentities(m_projects, root);
    }

    Result<ApprovedPath, PolicyViolation> of(const URL& given) {
        const URL url = given.standardized();
        const auto refused = [&](PolicyViolation::Kind kind) {
            return Failure(PolicyViolation{kind, url.path()});
        };
        if (const auto kind = violationOfText(url))
            return refused(*kind);
        const auto [position, isNew] = m_parents.try_emplace(url.deletingLastPathComponent());
        Parent& parent = position->second;
        if (isNew)
            find(parent, position->first);
        if (parent.escapes)
            return refused(PolicyViolation::Kind::symlinkEscapes);
        if (isInUnselectedProject(url))
            return refused(PolicyViolation::Kind::projectNotOptedIn);

        std::optional<FileIdentity> item;
        if (parent.folder) {
            const auto entry = (*parent.folder)->entry(url.lastPathComponent());
            if (!entry)
                return ApprovedPath(url, Failure(entry.error()), std::nullopt);
            item = *entry;
        }
        if (const auto kind = violationOfPlace(parent, item))
            return refused(*kind);
        return ApprovedPath(url, parent.folder, item);
    }

private:
    using Kind = PolicyViolation::Kind;

    /// The folder of an item, or of several.
    struct Parent {
        URL real;
        bool escapes = false;
        Result<std::shared_ptr<const JudgedFolder>, SystemError> folder = nullptr;
    };

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
        if (!isInsideAny(url, m_policy.allowedRoots) || path.find('\0') != std::string::npos)
            return Kind::outsideAllowedRoots;
        return std::nullopt;
    }

    void find(Parent& parent, const URL& folder) {
        const auto real = resolvedLinks(folder);
        parent.escapes = !real || !isInsideAny(*real, m_realRoots);
        if (parent.escapes)
            return;
        parent.real = *real;
        const auto hold = m_parents.size() <= foldersHeldOpen ? JudgedFolder::Hold::open
                                                              : JudgedFolder::Hold::byIdentity;
        parent.folder = JudgedFolder::open(*real, hold);
    }

    bool isInUnselectedProject(const URL& url) const {
        return !m_isProjectItem && isInsideAny(url, m_policy.projectRoots);
    }

    /// The same rules for where the item really lies, whatever its path says.
    std::optional<Kind> violationOfPlace(const Parent& parent,
                                         const std::optional<FileIdentity>& item) const {
        if (hasProtectedComponent(parent.real))
            return Kind::protectedName;
        if (!parent.folder)
            return std::nullopt; // there is no such place
        std::vector<FileIdentity> identities = (*parent.folder)->lineage();
        if (item) {
            if (m_containers.contains(*item))
                return Kind::containerItself;
            identities.push_back(*item);
        }
        if (holdsAny(m_neverTouched, identities))
            return Kind::protectedPath;
        if (!m_isProjectItem && holdsAny(m_projects, identities))
            return Kind::projectNotOptedIn;
        return std::nullopt;
    }

    const PathPolicy& m_policy;
    bool m_isProjectItem;
    std::vector<URL> m_realRoots; ///< and after them the roots as they are written
    std::set<FileIdentity> m_neverTouched;
    std::set<FileIdentity> m_containers;
    std::set<FileIdentity> m_projects;
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

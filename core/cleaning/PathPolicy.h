// The last gate in front of everything destructive, and the one place that lists where nothing may
// ever be touched.
#pragma once

#include "core/platform/ApprovedPath.h"
#include "core/support/Fields.h"

#include <set>
#include <span>
#include <string>
#include <vector>

namespace tidewright {

/// Why a path may not be touched.
struct PolicyViolation {
    enum class Kind {
        protectedPath,
        protectedName,
        containerItself,
        outsideAllowedRoots,
        symlinkEscapes,
        projectNotOptedIn,
    };
    Kind kind = Kind::protectedPath;
    std::string path; ///< standardised

    /// A sentence for the user.
    std::string errorDescription() const;

    bool operator==(const PolicyViolation&) const = default;
    static constexpr auto fields() {
        return std::tuple{field("kind", &PolicyViolation::kind),
                          field("path", &PolicyViolation::path)};
    }
};

template <>
struct EnumCases<PolicyViolation::Kind> {
    using Kind = PolicyViolation::Kind;
    static constexpr std::array cases{
        std::pair{Kind::protectedPath, std::string_view("protectedPath")},
        std::pair{Kind::protectedName, std::string_view("protectedName")},
        std::pair{Kind::containerItself, std::string_view("containerItself")},
        std::pair{Kind::outsideAllowedRoots, std::string_view("outsideAllowedRoots")},
        std::pair{Kind::symlinkEscapes, std::string_view("symlinkEscapes")},
        std::pair{Kind::projectNotOptedIn, std::string_view("projectNotOptedIn")},
    };
};

/// Made once for each cleanup. It reads what it must to know where a path really leads, and changes
/// nothing. Immutable, so any number of threads may ask it.
///
/// A path is judged by its text first. What passes is judged once more by where it really lies: a
/// place that is known under another spelling, through a link inside the home folder or by a second
/// mount, is recognised by its device and inode. That can only refuse more.
class PathPolicy {
public:
    PathPolicy(const URL& homeFolder,
               const URL& temporaryDirectory,
               const std::vector<URL>& projects,
               const std::vector<URL>& exclusions);

    const URL home;
    /// The only folders inside which anything may be touched.
    const std::vector<URL> allowedRoots;
    /// Folders of known projects; what lies inside needs `isProjectItem`.
    const std::vector<URL> projectRoots;
    const std::vector<URL> userExclusions;
    /// Never touched, with everything below.
    const std::vector<std::string> neverTouchPrefixes;
    /// They stay, what is in them may go.
    const std::set<std::string> containers;

    /// The permission to touch the path, or the first rule that forbids it. The permission holds
    /// the folder of the item open. A path at which nothing stands is judged like any other.
    Result<ApprovedPath, PolicyViolation> validate(const URL& url, bool isProjectItem) const;

    /// All paths in order, up to the first that is forbidden. Those of one folder share it, and few
    /// descriptors are needed for any number of folders.
    Result<std::vector<ApprovedPath>, PolicyViolation> validate(std::span<const URL> urls,
                                                                bool isProjectItem) const;

    bool isAllowed(const URL& url, bool isProjectItem) const;

    /// Whether one of the components looks like source control, signing keys or secrets.
    static bool hasProtectedComponent(const URL& url);

private:
    class Judgement;
};

} // namespace tidewright

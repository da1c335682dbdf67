// Finding an installed application by its identifier: among application bundles, then desktop
// entries, then Flatpaks.
#pragma once

#include "core/platform/Applications.h"
#include "core/platform/FileInfo.h"
#include "core/platform/Process.h"

#include <map>
#include <mutex>
#include <vector>

namespace tidewright {

/// Where applications are, each list in the order in which it is searched.
struct ApplicationFolders {
    std::vector<URL> bundles;        ///< with folders "Name.app"
    std::vector<URL> desktopEntries; ///< with files "identifier.desktop"
    std::vector<URL> flatpaks;       ///< with a folder per installed Flatpak
};

/// The folders of the system and of the user with this home. For desktop entries those of the XDG
/// Base Directory Specification, and Flatpak's and snap's even where the environment lacks them.
ApplicationFolders standardApplicationFolders(const URL& home, const Environment& environment);

/// Any thread. Keep it for many questions: it remembers the identifiers of the bundles that it has
/// read, and each time looks at their files' facts to see whether that still holds.
class ApplicationSearch {
public:
    /// An application with several names is found under each, the asked one first. What can't be an
    /// identifier finds nothing, and nothing outside of the folders is looked at.
    std::optional<InstalledApplication> find(const std::string& identifier,
                                             const ApplicationFolders& folders);

private:
    struct ReadIdentifier {
        FileInfo file;
        std::optional<std::string> identifier;
    };

    std::optional<InstalledApplication> findBundle(const std::string& identifier,
                                                   const URL& folder);
    std::optional<std::string> currentIdentifier(const URL& bundle);

    std::mutex m_mutex;
    std::map<URL, ReadIdentifier> m_identifiers; ///< by bundle
};

} // namespace tidewright

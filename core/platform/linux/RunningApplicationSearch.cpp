#include "core/platform/linux/RunningApplicationSearch.h"

#include "core/platform/Directory.h"
#include "core/platform/FileContents.h"
#include "core/platform/linux/ApplicationBundle.h"
#include "core/platform/linux/ApplicationUnit.h"
#include "core/platform/linux/KeyFile.h"
#include "core/platform/linux/KnownApplications.h"
#include "core/support/Text.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>

namespace tidewright {

namespace {

// The kernel lets arguments and environment together take 6 MB (execve(2)).
constexpr Int64 maximumArgumentBytes = 8'000'000;
constexpr Int64 maximumFactBytes = 1'000'000;

/// What a process runs.
struct Program {
    std::string executable; ///< absolute; empty when it can't be told
    std::vector<std::string> arguments;
};

std::string contents(const URL& file, Int64 maxBytes) {
    return readFilePrefix(file, maxBytes).value_or("");
}

/// The real user of a process. The owner of its folder does not tell: for a process that guards its
/// memory that is always root.
std::optional<std::uint32_t> userOf(const URL& process) {
    constexpr std::string_view label = "Uid:\t";
    for (const std::string& line :
         nonEmptyLines(contents(process.appending("status"), maximumFactBytes))) {
        std::uint32_t user = 0;
        const char* const end = line.data() + line.size();
        if (line.starts_with(label) &&
            std::from_chars(line.data() + label.size(), end, user).ec == std::errc())
            return user;
    }
    return std::nullopt;
}

std::string executableOf(const URL& process) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length =
        readlink(process.appending("exe").path().c_str(), target.data(), target.size());
    std::string path(target.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    constexpr std::string_view replaced = " (deleted)"; // by an update of the running application
    if (path.ends_with(replaced))
        path.resize(path.size() - replaced.size());
    return path;
}

Program programOf(const URL& process) {
    Program program{executableOf(process), {}};
    const std::string commandLine = contents(process.appending("cmdline"), maximumArgumentBytes);
    for (std::size_t start = 0; start < commandLine.size();) {
        const std::size_t end = std::min(commandLine.find('\0', start), commandLine.size());
        program.arguments.push_back(commandLine.substr(start, end - start));
        start = end + 1;
    }
    // Some processes put a title in place of their arguments: one text, with blanks between.
    if (program.arguments.size() == 1)
        program.arguments[0] = program.arguments[0].substr(0, program.arguments[0].find(" --"));
    return program;
}

std::string fileName(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

/// The script that a shell runs; empty for any other program.
std::string scriptOf(const Program& program) {
    constexpr std::array<std::string_view, 4> shells = {"sh", "bash", "dash", "zsh"};
    if (program.arguments.size() < 2)
        return {};
    const std::string shell = fileName(program.arguments[0]);
    const bool isShell = std::find(shells.begin(), shells.end(), shell) != shells.end();
    return isShell ? program.arguments[1] : "";
}

std::set<std::string> knownApplications(const std::string& path,
                                        const std::vector<std::string>& arguments) {
    std::set<std::string> identifiers;
    if (const auto identifier = identifierOfProgram(fileName(path)))
        identifiers.insert(*identifier);
    if (fileName(path) == "java")
        if (const auto identifier = identifierOfJavaProgram(arguments))
            identifiers.insert(*identifier);
    return identifiers;
}

/// All bundles that the path lies in: helpers have bundles inside of their application's.
std::set<std::string> bundlesAround(std::string_view path) {
    constexpr std::string_view mark = ".app/Contents/";
    std::set<std::string> identifiers;
    if (!path.starts_with('/'))
        return identifiers;
    for (std::size_t at = path.find(mark); at != path.npos; at = path.find(mark, at + 1))
        if (const auto identifier = bundleIdentifier(URL(std::string(path.substr(0, at + 4)))))
            identifiers.insert(*identifier);
    return identifiers;
}

std::set<std::string> applicationsOfProgram(const Program& program) {
    std::vector<std::string> paths{program.executable};
    if (!program.arguments.empty())
        paths.push_back(program.arguments[0]);
    const std::string script = scriptOf(program);
    std::set<std::string> identifiers = bundlesAround(script);
    if (script.ends_with(".sh")) // "studio.sh" is a known program, a script "code" is anybody's
        paths.push_back(script);
    for (const std::string& path : paths) {
        identifiers.merge(knownApplications(path, program.arguments));
        identifiers.merge(bundlesAround(path));
    }
    return identifiers;
}

/// flatpak-metadata(5): each sandbox has its application's facts in its root folder.
std::optional<std::string> flatpakOf(const URL& process) {
    const std::string facts = contents(process.appending("root/.flatpak-info"), maximumFactBytes);
    const auto name = keyFileValue(facts, "Application", "name");
    return name && isApplicationIdentifier(*name) ? name : std::nullopt;
}

std::set<std::string> applicationsOfProcess(const URL& process) {
    std::set<std::string> identifiers =
        applicationsOfControlGroups(contents(process.appending("cgroup"), maximumFactBytes));
    identifiers.merge(applicationsOfProgram(programOf(process)));
    if (const auto flatpak = flatpakOf(process))
        identifiers.insert(*flatpak);
    return identifiers;
}

bool isProcessFolder(const DirectoryEntry& entry) {
    return entry.name.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

std::set<std::string> findRunningApplications(const URL& processes, std::uint32_t userID) {
    const auto entries = readDirectory(processes);
    if (!entries)
        return {};
    std::set<std::string> identifiers;
    for (const DirectoryEntry& entry : *entries) {
        const URL process = processes.appending(entry.name);
        if (isProcessFolder(entry) && userOf(process) == userID)
            identifiers.merge(applicationsOfProcess(process));
    }
    std::set<std::string> underAllNames;
    for (const std::string& identifier : identifiers)
        for (std::string& name : allIdentifiers(identifier))
            underAllNames.insert(std::move(name));
    return underAllNames;
}

} // namespace tidewright

// What a sample home holds besides its text files, as tables. Paths are relative to the home.
// Nothing here touches the disk.
#pragma once

#include "core/support/Bytes.h"

#include <optional>
#include <span>
#include <string_view>

namespace tidewright::HomeContents {

/// A file of which only size and age matter.
struct SizedFile {
    std::string_view path; ///< "{date}" in it stands for the day of its age: "2026-03-01"
    Int64 bytes = 0;       ///< in real life
    int days = 0;          ///< its age
    Int64 atLeast = 0;     ///< its size however small the scale
};
std::span<const SizedFile> sizedFiles();

/// An application bundle with its Info.plist.
struct Application {
    std::string_view name; ///< of the bundle in Applications, without ".app"
    std::string_view identifier;
    std::string_view version;
    Int64 bytes = 0; ///< in real life
    int days = 0;
};
std::span<const Application> applications();

/// A further name of a sized file.
struct HardLink {
    std::string_view path;
    std::string_view existing;
};
std::span<const HardLink> hardLinks();

struct SymbolicLink {
    std::string_view path;
    std::string_view target;
};
std::span<const SymbolicLink> symbolicLinks();

/// Folders with nothing in them.
std::span<const std::string_view> emptyFolders();

/// Folders that their owner may not change, with all that they hold.
std::span<const std::string_view> readOnlyFolders();

/// The age of the text files in a folder. Of several folders the innermost counts.
struct TextAge {
    std::string_view folder; ///< or a file; empty for the whole home
    int days = 0;
};
std::span<const TextAge> textAges();

/// What the simulators' tool knows.
struct SimulatorRuntime {
    std::string_view identifier;        ///< a UUID
    std::string_view runtimeIdentifier; ///< as devices name it
    std::string_view platformIdentifier;
    std::string_view version;
    std::string_view build;
    Int64 bytes = 0; ///< of the image, in real life
    int lastUsedDays = 0;
};
std::span<const SimulatorRuntime> simulatorRuntimes();

struct Simulator {
    std::string_view udid;
    std::string_view name;
    std::string_view runtimeIdentifier; ///< perhaps of a runtime that is gone
    std::string_view state;
    Int64 bytes = 0; ///< of its data, in real life
    std::optional<int> lastBootedDays;
    Int64 atLeast = 0;
};
std::span<const Simulator> simulators();

/// The ages, in hours, of the local snapshots that the backup tool lists.
std::span<const int> snapshotHours();

} // namespace tidewright::HomeContents

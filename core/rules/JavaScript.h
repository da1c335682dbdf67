// What the JavaScript toolchain leaves behind: download caches of its package managers, caches of
// its bundlers and tools, Node versions that no project asks for.
#pragma once

#include "core/scan/CleanupRule.h"

namespace tidewright {

struct NPMRule {
    std::string id = "js.npm";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct YarnRule {
    std::string id = "js.yarn";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct PNPMRule {
    std::string id = "js.pnpm";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct BunRule {
    std::string id = "js.bun";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct ExpoRule {
    std::string id = "js.expo";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct NodeGypRule {
    std::string id = "js.nodeGyp";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct BundlerTempRule {
    std::string id = "js.bundlerTemp";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct DotslashRule {
    std::string id = "js.dotslash";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

struct NodeVersionsRule {
    std::string id = "js.nodeVersions";
    std::vector<ScanItem> scan(const ScanContext& context) const;
};

/// Whether what a project asks of Node, verbatim, admits an installed version such as "20.11.0".
/// Small on purpose: "20" and "v20.11" admit what begins with them, ">=18" any version from that
/// major number on; a caret or tilde only loses its sign; compound ranges and aliases such as
/// "lts/iron" admit nothing.
bool admitsNodeVersion(std::string_view requirement, std::string_view version);

} // namespace tidewright

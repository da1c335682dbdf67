// What the tests of the rules share: the home that is scanned, the items to expect, comparing them.
#pragma once

#include "core/model/ScanItem.h"
#include "core/scan/ScanContext.h"
#include "tests/support/TempHome.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <functional>
#include <memory>

namespace tidewright::test {

inline const Date now = parseISO8601("2026-03-01T12:00:00Z").value();

/// A scan at `now`, whose tools are the home's only.
ScanContext contextOf(const TempHome& home);

template <class Rule>
std::vector<ScanItem> scanWith(const ScanContext& context) {
    return Rule().scan(context);
}

/// What most items have in common: safe to remove, nobody's, not measured yet.
ScanItem usualItem(Category category, std::string ruleID, const std::string& key);
/// The same of these locations, of which the first is the key.
ScanItem usualItem(Category category, std::string ruleID, std::vector<URL> urls);

ScanItem kept(ScanItem item, std::string reason, std::optional<std::string> inUseBy);

std::string text(const std::vector<ScanItem>& items);
void expectItems(const std::vector<ScanItem>& found, const std::vector<ScanItem>& expected);

/// A home in which a rule finds nothing.
struct LeftAlone {
    std::string name;
    std::vector<ScanItem> (*scan)(const ScanContext&);
    std::vector<std::string> files = {};
    std::vector<std::string> folders = {};
    std::vector<std::pair<std::string, std::string>> links = {};
};

void PrintTo(const LeftAlone& each, std::ostream* stream);

/// Makes the folders, files and links of a test's parameter, all below one place in the home.
template <class Parameter>
void make(const TempHome& home,
          const Parameter& parameter,
          std::string_view contents = {},
          const std::string& below = {}) {
    for (const std::string& folder : parameter.folders)
        home.folder(below + folder);
    for (const std::string& file : parameter.files)
        home.file(below + file, contents);
    for (const auto& [path, target] : parameter.links)
        home.link(below + path, target);
}

class RuleTest : public testing::Test {
protected:
    TempHome home;
    ScanContext context = contextOf(home);

    template <class Rule>
    std::vector<ScanItem> scan() const {
        return scanWith<Rule>(context);
    }
    std::vector<URL> at(std::initializer_list<std::string_view> relativePaths) const;
    void run(std::vector<std::string> commandLines);
    void launch(const std::string& bundleIdentifier);
    /// Expects that `scan` changes nothing in the home and runs none of these tools.
    void expectOnlyReads(std::initializer_list<std::string_view> tools,
                         const std::function<void()>& scan) const;
};

/// Days begin where the user is.
class InBerlin {
public:
    InBerlin();
    ~InBerlin();
    InBerlin(const InBerlin&) = delete;
    InBerlin& operator=(const InBerlin&) = delete;

private:
    std::unique_ptr<icu::TimeZone> m_usual{icu::TimeZone::createDefault()};
};

} // namespace tidewright::test

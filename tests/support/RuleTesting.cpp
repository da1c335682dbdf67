#include "tests/support/RuleTesting.h"

#include "core/model/Coding.h"

#include <fmt/format.h>

#include <thread>

namespace tidewright::test {

using namespace std::chrono_literals;

ScanContext contextOf(const TempHome& home) {
    ScanContext context;
    context.home = home.url();
    context.temporaryDirectory = home.path("tmp");
    context.runner.locator = ToolLocator(home.url(), {});
    context.now = now;
    return context;
}

ScanItem usualItem(Category category, std::string ruleID, const std::string& key) {
    ScanItem item;
    item.id = ruleID + ":" + key;
    item.ruleID = std::move(ruleID);
    item.version = std::nullopt;
    item.sizeSource = SizeSource::measure();
    item.sizeBytes = 0;
    item.category = category;
    item.risk = Risk::safe;
    item.decision = Decision::clean;
    item.method = CleanMethod::remove();
    item.inUseBy = std::nullopt;
    item.owner = std::nullopt;
    item.lastUsed = std::nullopt;
    item.isProjectItem = false;
    item.hideBelowBytes = 1'000'000;
    return item;
}

ScanItem usualItem(Category category, std::string ruleID, std::vector<URL> urls) {
    ScanItem item = usualItem(category, std::move(ruleID), urls.front().path());
    item.urls = std::move(urls);
    return item;
}

ScanItem kept(ScanItem item, std::string reason, std::optional<std::string> inUseBy) {
    item.decision = Decision::keep;
    item.reason = std::move(reason);
    item.inUseBy = std::move(inUseBy);
    return item;
}

std::string text(const std::vector<ScanItem>& items) {
    return jsonText(encode(items, commandLineStyle), JsonLayout::indented);
}

void expectItems(const std::vector<ScanItem>& found, const std::vector<ScanItem>& expected) {
    EXPECT_EQ(text(found), text(expected)); // shows what differs
    EXPECT_TRUE(found == expected);
}

void PrintTo(const LeftAlone& each, std::ostream* stream) { *stream << each.name; }

std::vector<URL> RuleTest::at(std::initializer_list<std::string_view> relativePaths) const {
    std::vector<URL> urls;
    for (const std::string_view path : relativePaths)
        urls.push_back(home.path(path));
    return urls;
}

void RuleTest::run(std::vector<std::string> commandLines) {
    context.inUse.processCommandLines = std::move(commandLines);
}

void RuleTest::launch(const std::string& bundleIdentifier) {
    context.inUse.runningBundleIdentifiers.insert(bundleIdentifier);
}

void RuleTest::expectOnlyReads(std::initializer_list<std::string_view> tools,
                               const std::function<void()>& scan) const {
    for (const std::string_view tool : tools)
        home.tool(fmt::format(".volta/bin/{}", tool), "touch \"$(dirname \"$0\")/was-run\"");
    // File systems note a read in the access time once after a change, and not within its tick.
    std::this_thread::sleep_for(50ms);
    home.snapshot();
    const std::string before = home.snapshot();
    scan();
    EXPECT_EQ(home.snapshot(), before);
}

InBerlin::InBerlin() {
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Europe/Berlin"));
}

InBerlin::~InBerlin() { icu::TimeZone::setDefault(*m_usual); }

} // namespace tidewright::test

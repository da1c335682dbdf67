#include "app/state/AppModel.h"

#include "core/insights/InsightEngine.h"
#include "core/platform/FileInfo.h"
#include "core/probes/SystemAccess.h"

#include <fmt/format.h>

#include <algorithm>

namespace tidewright {

namespace {

constexpr auto startingMessage = "Starting…";
constexpr QLatin1StringView destinationKey{"TWDestination"};
constexpr QLatin1StringView scanOnLaunchKey{"TWScanOnLaunch"};

Destination destinationOf(Insight::Destination destination) {
    switch (destination) {
    case Insight::Destination::android:
        return Destination::category(Category::android);
    case Insight::Destination::xcode:
        return Destination::category(Category::xcode);
    case Insight::Destination::javascript:
        return Destination::category(Category::javascript);
    case Insight::Destination::system:
        return Destination::category(Category::system);
    case Insight::Destination::projects:
        return Destination::category(Category::projects);
    case Insight::Destination::apps:
        break;
    }
    return Destination::apps();
}

std::optional<Destination> destinationNamed(std::string_view name) {
    if (name == "insights")
        return Destination::insights();
    if (name == "apps")
        return Destination::apps();
    if (name == "history")
        return Destination::history();
    for (const Category category : allCases<Category>())
        if (rawValue(category) == name)
            return Destination::category(category);
    return std::nullopt;
}

/// Everything else is copied, which is little beside thousands of items.
ScanReport withoutItems(const ScanReport& report) {
    ScanReport copy;
    const auto take = [&]<class Value>(const Field<ScanReport, Value>& field) {
        if constexpr (!std::same_as<Value, decltype(ScanReport::items)>)
            copy.*field.member = report.*field.member;
    };
    std::apply([&](const auto&... fields) { (take(fields), ...); }, ScanReport::fields());
    return copy;
}

std::unordered_set<std::string> defaultSelection(const ScanReport& report) {
    std::unordered_set<std::string> ids;
    for (const ScanItem& item : report.items)
        if (item.decision == Decision::clean)
            ids.insert(item.id);
    return ids;
}

} // namespace

AppModel::AppModel(AppEnvironment environment,
                   DefaultsStore& defaults,
                   Workers& workers,
                   QObject* parent)
    : QObject(parent),
      m_environment(std::move(environment)),
      m_workers(workers),
      m_settings(defaults),
      m_history(m_environment.historyDirectory),
      m_monitor(m_settings, defaults, workers, m_environment.monitorSystem),
      m_hasFullDiskAccess(m_environment.hasFullDiskAccess()) {}

AppModel::~AppModel() {
    if (m_scanCancel)
        m_scanCancel->cancel();
}

void AppModel::setDestination(Destination destination) {
    if (m_destination == destination)
        return;
    m_destination = destination;
    Q_EMIT destinationChanged();
}

QString AppModel::destinationName() const {
    const auto* category = std::get_if<Destination::OfCategory>(&m_destination.choice);
    const std::string_view name = category != nullptr
                                      ? rawValue(category->category)
                                      : Destination::cases.at(m_destination.choice.index());
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

void AppModel::setDestinationName(const QString& name) {
    if (name == QLatin1String("overview"))
        setDestination(Destination::overview());
    else if (const auto named = destinationNamed(name.toStdString()))
        setDestination(*named);
}

bool AppModel::asksForFullDiskAccess() const {
    return m_environment.protectsUserFiles && !m_hasFullDiskAccess;
}

void AppModel::checkFullDiskAccess() {
    const bool access = m_environment.hasFullDiskAccess();
    if (access == m_hasFullDiskAccess)
        return;
    m_hasFullDiskAccess = access;
    Q_EMIT hasFullDiskAccessChanged();
}

void AppModel::openFullDiskAccessSettings() {
    m_environment.openLocation(std::string(SystemAccess::fullDiskAccessSettingsURL));
}

bool AppModel::isScanning() const {
    return std::holds_alternative<ScanState::Scanning>(m_scanState.choice);
}

DiskScanner AppModel::scanner() const {
    return {m_settings.scanSettings(), m_environment.home, m_environment.rules,
            m_environment.runner};
}

void AppModel::scan() {
    if (isScanning())
        return;
    checkFullDiskAccess();
    setScanState({ScanState::Scanning{
        {.phase = ScanProgress::Phase::discovering, .fraction = 0, .message = startingMessage}}});
    m_scanCancel.emplace();
    m_workers.start([&workers = m_workers, self = QPointer(this), scan = m_environment.scan,
                     scanner = scanner(), cancel = m_scanCancel->token()] {
        const auto onProgress = [&](const ScanProgress& progress) {
            workers.deliver<AppModel>(self, [progress](AppModel& model) {
                if (model.isScanning())
                    model.setScanState({ScanState::Scanning{progress}});
            });
        };
        auto ended = scan(scanner, onProgress, cancel).map([](ScanReport&& report) {
            return std::make_shared<const ScanReport>(std::move(report));
        });
        workers.deliver<AppModel>(
            self, [ended = std::move(ended)](AppModel& model) { model.endScan(ended); });
    });
}

void AppModel::endScan(const ScanResult& result) {
    if (!result && result.error().sentence)
        return setScanState({ScanState::Failed{*result.error().sentence}});
    if (!result)
        return leaveScanning();
    setReport(*result);
    setSelection(defaultSelection(**result));
    setScanState({ScanState::Ready{}});
    m_monitor.refresh([this, report = *result] {
        m_logger.info(fmt::format("Scan finished: {} items in {} seconds", report->items.size(),
                                  std::chrono::duration<double>(report->duration).count()));
    });
}

void AppModel::cancelScan() {
    if (m_scanCancel)
        m_scanCancel->cancel();
    m_scanCancel.reset();
    leaveScanning();
}

void AppModel::leaveScanning() {
    setScanState(m_report ? ScanState{ScanState::Ready{}} : ScanState{ScanState::Idle{}});
}

void AppModel::setScanState(ScanState state) {
    if (m_scanState == state)
        return;
    m_scanState = std::move(state);
    Q_EMIT scanStateChanged();
}

void AppModel::setReport(std::shared_ptr<const ScanReport> report) {
    m_report = std::move(report);
    m_sums.reset();
    Q_EMIT reportChanged();
}

void AppModel::setSelection(std::unordered_set<std::string> selection) {
    if (m_selection == selection)
        return;
    m_selection = std::move(selection);
    selectionHasChanged();
}

void AppModel::selectionHasChanged() {
    m_sums.reset();
    Q_EMIT selectionChanged();
}

bool AppModel::maySelect(const ScanItem& item) {
    return isSelectable(item.decision) && item.method.isExecutable();
}

void AppModel::setSelected(const ScanItem& item, bool on) {
    if (!maySelect(item))
        return;
    const bool isChanged = on ? m_selection.insert(item.id).second : m_selection.erase(item.id) > 0;
    if (isChanged)
        selectionHasChanged();
}

std::vector<ScanItem> AppModel::selectedItems() const {
    std::vector<ScanItem> items;
    if (m_report)
        std::ranges::copy_if(m_report->items, std::back_inserter(items),
                             [this](const ScanItem& item) { return isChosen(item); });
    return items;
}

bool AppModel::isChosen(const ScanItem& item) const {
    return maySelect(item) && isSelected(item.id);
}

const SelectionSums& AppModel::sums() const {
    if (m_sums)
        return *m_sums;
    SelectionSums& sums = m_sums.emplace();
    if (!m_report)
        return sums;
    for (const ScanItem& item : m_report->items) {
        if (!isSelected(item.id))
            continue;
        sums.reclaimable.at(static_cast<std::size_t>(item.category)) += item.sizeBytes;
        if (!maySelect(item))
            continue;
        sums.bytes += item.sizeBytes;
        sums.hasItems = true;
    }
    return sums;
}

bool AppModel::hasSelectedItems() const { return sums().hasItems; }

Int64 AppModel::selectedBytes() const { return sums().bytes; }

Int64 AppModel::reclaimable(Category category) const {
    return sums().reclaimable.at(static_cast<std::size_t>(category));
}

void AppModel::setSession(std::shared_ptr<CleaningSession> session) {
    if (m_session == session)
        return;
    std::swap(m_session, session); // the earlier one lives until all have heard
    Q_EMIT sessionChanged();
}

void AppModel::reviewSelection() {
    if (std::vector<ScanItem> items = selectedItems(); !items.empty())
        setSession(std::make_shared<CleaningSession>(std::move(items)));
}

void AppModel::review(const std::vector<std::string>& itemIDs) {
    if (!m_report)
        return;
    const std::unordered_set<std::string> wanted(itemIDs.begin(), itemIDs.end());
    std::vector<ScanItem> items;
    std::ranges::copy_if(m_report->items, std::back_inserter(items), [&](const ScanItem& item) {
        return maySelect(item) && wanted.contains(item.id);
    });
    if (items.empty())
        return;
    std::unordered_set<std::string> selection = m_selection;
    for (const ScanItem& item : items)
        selection.insert(item.id);
    setSelection(std::move(selection));
    setSession(std::make_shared<CleaningSession>(std::move(items)));
}

void AppModel::closeSession() { setSession(nullptr); }

void AppModel::perform(const Insight& insight) {
    if (const auto* action = std::get_if<Insight::Action::Review>(&insight.action.choice))
        review(action->itemIDs);
    else if (const auto* open = std::get_if<Insight::Action::Open>(&insight.action.choice))
        setDestination(destinationOf(open->destination));
}

PathPolicy AppModel::policy(const std::vector<Project>& projects) const {
    std::vector<URL> folders;
    for (const Project& project : projects)
        folders.push_back(project.url);
    return {m_environment.home, m_environment.temporaryDirectory, folders,
            m_settings.scanSettings().exclusions};
}

Cleaner AppModel::cleaner() const {
    return {.policy = policy(m_report->projects),
            .runner = m_environment.runner,
            .logDirectory = m_environment.auditLogDirectory,
            .needed = m_report->needed,
            .home = m_environment.home};
}

void AppModel::startCleaning() {
    if (!m_session || !m_report || m_session->phase() != CleaningSession::Phase::review)
        return;
    m_cleaning.push_back(m_session);
    m_session->run(cleaner(), m_workers,
                   [self = QPointer(this), session = m_session.get()](const CleanSummary& summary) {
                       if (self)
                           self->endCleaning(summary, session);
                   });
}

void AppModel::stopCleaning() {
    if (m_session)
        m_session->stop();
}

void AppModel::endCleaning(const CleanSummary& summary, CleaningSession* session) {
    m_history.record(summary);
    applyResults(summary);
    m_monitor.refresh();
    std::erase_if(m_cleaning, [&](const auto& each) { return each.get() == session; });
}

void AppModel::applyResults(const CleanSummary& summary) {
    if (!m_report)
        return;
    std::unordered_set<std::string_view> gone;
    for (const CleanOutcome& outcome : summary.outcomes)
        if (outcome.status.isSuccess())
            gone.insert(outcome.itemID);
    auto edited = std::make_shared<ScanReport>(withoutItems(*m_report));
    std::ranges::copy_if(m_report->items, std::back_inserter(edited->items),
                         [&](const ScanItem& item) { return !gone.contains(item.id); });
    edited->disk = summary.diskAfter;
    edited->insights = InsightEngine{m_settings.scanSettings()}.insights(
        edited->disk, edited->items, edited->apps, edited->largeFiles, currentDate());
    setReport(std::move(edited)); // first, so that rows that go are not told to be deselected
    if (std::erase_if(m_selection, [&](const std::string& id) { return gone.contains(id); }) > 0)
        selectionHasChanged();
}

void AppModel::applyLaunchArguments(const DefaultsStore& defaults) {
    if (const auto named = destinationNamed(defaults.text(destinationKey).toStdString()))
        setDestination(*named);
    if (defaults.boolean(scanOnLaunchKey))
        scan();
}

void AppModel::reveal(const std::vector<URL>& urls) {
    std::vector<URL> existing;
    std::ranges::copy_if(urls, std::back_inserter(existing), fileExists);
    m_environment.reveal(existing);
}

} // namespace tidewright

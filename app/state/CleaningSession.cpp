#include "app/state/CleaningSession.h"

#include "core/support/Require.h"

#include <QUuid>

#include <algorithm>

namespace tidewright {

namespace {

template <class Holds>
Int64 bytesOf(const std::vector<ScanItem>& items, const Holds& holds) {
    Int64 sum = 0;
    for (const ScanItem& item : items)
        if (holds(item))
            require(!__builtin_add_overflow(sum, item.sizeBytes, &sum), "sizes add up to bytes");
    return sum;
}

} // namespace

CleaningSession::CleaningSession(std::vector<ScanItem> items, QObject* parent)
    : QObject(parent),
      m_id(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString()),
      m_items(std::move(items)) {
    std::ranges::stable_sort(m_items, std::ranges::greater(), &ScanItem::sizeBytes);
    for (const ScanItem& item : m_items)
        require(m_states.try_emplace(item.id).second,
                "Duplicate values for key: '" + item.id + "'");
}

CleaningSession::~CleaningSession() { m_stop.cancel(); }

CleaningSession::ItemState CleaningSession::state(const std::string& itemID) const {
    const auto found = m_states.find(itemID);
    return found == m_states.end() ? ItemState{} : found->second;
}

Int64 CleaningSession::totalBytes() const {
    return bytesOf(m_items, [](const ScanItem&) { return true; });
}

Int64 CleaningSession::permanentBytes() const {
    return bytesOf(m_items, [](const ScanItem& item) { return !item.method.isTrash(); });
}

Int64 CleaningSession::trashBytes() const {
    return bytesOf(m_items, [](const ScanItem& item) { return item.method.isTrash(); });
}

bool CleaningSession::needsAttention(const ScanItem& item) {
    return item.risk >= Risk::check || item.isProjectItem;
}

std::vector<ScanItem> CleaningSession::needsAttention() const {
    std::vector<ScanItem> items;
    std::ranges::copy_if(m_items, std::back_inserter(items),
                         [](const ScanItem& item) { return needsAttention(item); });
    return items;
}

void CleaningSession::run(const Cleaner& cleaner,
                          Workers& workers,
                          std::function<void(const CleanSummary&)> onFinish) {
    if (m_phase != Phase::review)
        return;
    m_onFinish = std::move(onFinish);
    m_phase = Phase::cleaning;
    workers.start([&workers, cleaner, items = m_items, self = QPointer(this), stop = m_stop.token(),
                   windUp = m_windUp.token()] {
        CleanStream stream = cleaner.clean(items);
        const CancelCallback onStop = stop.onCancel([&] { stream.cancel(); });
        const CancelCallback onWindUp = windUp.onCancel([&] { stream.windUp(); });
        while (auto event = stream.next())
            workers.deliver<CleaningSession>(
                self,
                [event = std::move(*event)](CleaningSession& session) { session.hear(event); });
    });
    Q_EMIT phaseChanged();
}

void CleaningSession::stop() {
    if (m_phase == Phase::cleaning)
        m_stop.cancel();
}

void CleaningSession::windUp() {
    if (m_phase == Phase::cleaning)
        m_windUp.cancel();
}

void CleaningSession::hear(const CleanEvent& event) {
    if (const auto* started = std::get_if<CleanEvent::Started>(&event.choice))
        return setState(started->itemID, {ItemState::Running{}});
    if (const auto* finished = std::get_if<CleanEvent::Finished>(&event.choice))
        return setState(finished->outcome.itemID, {ItemState::Done{finished->outcome.status}});
    m_summary = std::get<CleanEvent::Completed>(event.choice).summary;
    m_phase = Phase::finished;
    Q_EMIT phaseChanged();
    // Its owner may let go of this session now.
    const auto onFinish = std::move(m_onFinish);
    onFinish(std::get<CleanEvent::Completed>(event.choice).summary);
}

void CleaningSession::setState(const std::string& itemID, ItemState state) {
    ItemState& current = m_states[itemID];
    if (current == state)
        return;
    const auto isDone = [](const ItemState& each) {
        return std::holds_alternative<ItemState::Done>(each.choice);
    };
    const bool isCompleted = isDone(state) && !isDone(current);
    current = std::move(state);
    Q_EMIT stateChanged(itemID);
    if (isCompleted) {
        ++m_completedCount;
        Q_EMIT completedCountChanged();
    }
}

} // namespace tidewright

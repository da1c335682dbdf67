#include "app/state/SessionListModel.h"

#include <algorithm>

namespace tidewright {

namespace {

using Phase = CleaningSession::Phase;
using ItemState = CleaningSession::ItemState;
using Status = CleanOutcome::Status;

const Status* statusIn(const ItemState& state) {
    const auto* done = std::get_if<ItemState::Done>(&state.choice);
    return done != nullptr ? &done->status : nullptr;
}

std::string_view stateName(const ItemState& state) {
    if (const Status* status = statusIn(state))
        return Status::cases.at(status->choice.index());
    return std::holds_alternative<ItemState::Running>(state.choice) ? "running" : "pending";
}

const char* stateSymbol(const ItemState& state) {
    const Status* status = statusIn(state);
    if (status == nullptr)
        return std::holds_alternative<ItemState::Running>(state.choice) ? "" : "circle";
    if (std::holds_alternative<Status::Skipped>(status->choice))
        return "minus.circle.fill";
    if (std::holds_alternative<Status::Failed>(status->choice))
        return "xmark.circle.fill";
    return std::holds_alternative<Status::MovedToTrash>(status->choice) ? "trash.circle.fill"
                                                                        : "checkmark.circle.fill";
}

const char* stateTint(const ItemState& state) {
    const Status* status = statusIn(state);
    if (status == nullptr)
        return std::holds_alternative<ItemState::Running>(state.choice) ? "accent" : "secondary";
    if (std::holds_alternative<Status::Skipped>(status->choice))
        return "orange";
    return std::holds_alternative<Status::Failed>(status->choice) ? "red" : "green";
}

const char* stateTitle(const ItemState& state) {
    const Status* status = statusIn(state);
    if (status == nullptr)
        return std::holds_alternative<ItemState::Running>(state.choice)
                   ? QT_TRANSLATE_NOOP("tidewright::SessionListModel", "Being cleaned")
                   : QT_TRANSLATE_NOOP("tidewright::SessionListModel", "Waiting");
    if (!status->isSuccess())
        return QT_TRANSLATE_NOOP("tidewright::SessionListModel", "Not cleaned");
    return std::holds_alternative<Status::MovedToTrash>(status->choice)
               ? QT_TRANSLATE_NOOP("tidewright::SessionListModel", "Moved to the Trash")
               : QT_TRANSLATE_NOOP("tidewright::SessionListModel", "Cleaned");
}

QString planText(const ScanItem& item) {
    if (const auto* command = std::get_if<CleanMethod::Command>(&item.method.choice))
        return shownText(command->command.displayString());
    return shownText(item.afterEffect);
}

} // namespace

SessionListModel::SessionListModel(AppModel& model, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model) {
    connect(&model, &AppModel::sessionChanged, this, &SessionListModel::takeSession);
    takeSession();
}

QString SessionListModel::attentionText() const {
    if (m_figures.attention == 0)
        return {};
    return tr("%1 items are personal data, devices or project files. Check them below.")
        .arg(m_figures.attention);
}

QString SessionListModel::cleanTitle() const { return tr("Clean %1").arg(m_figures.total.text()); }

double SessionListModel::progress() const {
    if (m_progress.total == 0)
        return 0;
    return static_cast<double>(m_progress.completed) / static_cast<double>(m_progress.total);
}

QString SessionListModel::progressText() const {
    return tr("%1 of %2 done").arg(m_progress.completed).arg(m_progress.total);
}

QVariant SessionListModel::value(std::size_t position, int role) const {
    const ScanItem& item = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::itemID:
        return QByteArray::fromStdString(item.id);
    case Role::title:
        return shownText(item.title);
    case Role::version:
        return shownText(item.version.value_or(""));
    case Role::sizeBytes:
        return QVariant::fromValue<qint64>(item.sizeBytes);
    case Role::sizeText:
        return tidewright::sizeText(item.sizeBytes);
    case Role::methodGroup:
        return shownText(item.method.label());
    case Role::detail:
        return detail(position);
    case Role::attention:
        return asksForAttention(position);
    case Role::state:
        return m_phase == Phase::review ? QString() : shownText(stateName(m_states[position]));
    case Role::symbolName:
        if (m_phase == Phase::review)
            return QString::fromLatin1(item.method.isTrash() ? "trash" : "sparkles");
        return QString::fromLatin1(stateSymbol(m_states[position]));
    case Role::stateTitle:
        return m_phase == Phase::review ? QString() : tr(stateTitle(m_states[position]));
    case Role::tint:
        return QString::fromLatin1(m_phase == Phase::review ? "secondary"
                                                            : stateTint(m_states[position]));
    }
    return {};
}

QString SessionListModel::detail(std::size_t position) const {
    const Status* status = statusIn(m_states[position]);
    if (status != nullptr && std::holds_alternative<Status::Failed>(status->choice))
        return tr("Failed: %1").arg(shownText(*status->reason()));
    if (status != nullptr && std::holds_alternative<Status::Skipped>(status->choice))
        return tr("Skipped: %1").arg(shownText(*status->reason()));
    return planText((*records())[position]);
}

bool SessionListModel::asksForAttention(std::size_t position) const {
    if (m_phase == Phase::review)
        return CleaningSession::needsAttention((*records())[position]);
    const Status* status = statusIn(m_states[position]);
    return status != nullptr && !status->isSuccess();
}

void SessionListModel::showAuditLog() {
    if (m_model && m_session && m_session->summary() && m_session->summary()->logFile)
        m_model->reveal({*m_session->summary()->logFile});
}

void SessionListModel::takeSession() {
    if (m_session)
        m_session->disconnect(this);
    m_session = m_model->session();
    const auto items = m_session ? std::make_shared<const std::vector<ScanItem>>(m_session->items())
                                 : std::make_shared<const std::vector<ScanItem>>();
    show(items, {}, [&] { m_states.assign(items->size(), ItemState()); });
    m_positionOf.clear();
    for (std::size_t position = 0; position < items->size(); ++position)
        m_positionOf[(*items)[position].id] = position;
    if (m_session) {
        connect(m_session, &CleaningSession::phaseChanged, this, [this] {
            takePhase();
            takeFace();
        });
        connect(m_session, &CleaningSession::stateChanged, this, &SessionListModel::takeState);
        connect(m_session, &CleaningSession::completedCountChanged, this,
                &SessionListModel::takeProgress);
        for (const ScanItem& item : *items)
            m_states[m_positionOf[item.id]] = m_session->state(item.id);
    }
    takePhase();
    takeProgress();
    takeFigures();
    takeFace();
}

void SessionListModel::takePhase() {
    const Phase phase = m_session ? m_session->phase() : Phase::review;
    const bool isChanged = std::exchange(m_phase, phase) != phase;
    reset(m_session ? rowsOf(*m_session) : Rows());
    if (!isChanged)
        return;
    tellChanged([](int) { return true; }); // rows that stayed have a state now
    Q_EMIT phaseChanged();
}

void SessionListModel::takeFace() {
    takeResults(); // first, so that the results are there when their face is shown
    const auto faceOf = [](Phase phase) {
        switch (phase) {
        case Phase::review:
            return QStringLiteral("review");
        case Phase::cleaning:
            return QStringLiteral("cleaning");
        case Phase::finished:
            break;
        }
        return QStringLiteral("finished");
    };
    const QString face = m_session ? faceOf(m_session->phase()) : QString();
    if (std::exchange(m_face, face) != face)
        Q_EMIT faceChanged();
}

void SessionListModel::takeResults() {
    const bool isFinished = m_session && m_session->summary();
    const CleanResults results =
        isFinished ? CleanResults::of(*m_session->summary()) : CleanResults();
    if (m_results == results)
        return;
    m_results = results;
    Q_EMIT resultsChanged();
}

void SessionListModel::takeState(const std::string& itemID) {
    const auto found = m_positionOf.find(itemID);
    if (found == m_positionOf.end())
        return;
    m_states[found->second] = m_session->state(itemID);
    tellChanged([&](int row) { return rows()[static_cast<std::size_t>(row)] == found->second; },
                {static_cast<int>(Role::state), static_cast<int>(Role::symbolName),
                 static_cast<int>(Role::stateTitle), static_cast<int>(Role::tint),
                 static_cast<int>(Role::detail), static_cast<int>(Role::attention)});
}

void SessionListModel::takeProgress() {
    const Progress progress{m_session ? m_session->completedCount() : 0, records()->size()};
    if (m_progress == progress)
        return;
    m_progress = progress;
    Q_EMIT progressChanged();
}

void SessionListModel::takeFigures() {
    Figures figures;
    for (const ScanItem& item : *records()) {
        figures.total.bytes += item.sizeBytes;
        (item.method.isTrash() ? figures.trash : figures.permanent).bytes += item.sizeBytes;
        figures.attention += CleaningSession::needsAttention(item) ? 1 : 0;
    }
    if (m_figures == figures)
        return;
    m_figures = figures;
    Q_EMIT figuresChanged();
}

SessionListModel::Rows SessionListModel::rowsOf(const CleaningSession& session) const {
    Rows rows = allOf(records());
    if (session.phase() == Phase::cleaning)
        return rows;
    if (session.phase() == Phase::finished)
        return failures(*session.summary());
    const auto place = [&](std::size_t position) {
        // In the order of the alternatives of a method: remove, trash, command, manual.
        constexpr std::array places{1, 2, 0, 3};
        return places.at((*records())[position].method.choice.index());
    };
    std::erase_if(rows, [&](std::size_t position) { return place(position) == 3; });
    std::ranges::stable_sort(rows, {}, place);
    return rows;
}

SessionListModel::Rows SessionListModel::failures(const CleanSummary& summary) const {
    Rows rows;
    for (const CleanOutcome& outcome : summary.outcomes) {
        const auto found = m_positionOf.find(outcome.itemID);
        if (!outcome.status.isSuccess() && found != m_positionOf.end())
            rows.push_back(found->second);
    }
    return rows;
}

} // namespace tidewright

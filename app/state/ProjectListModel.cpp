#include "app/state/ProjectListModel.h"

namespace tidewright {

namespace {

QString label(const Project::Requirement& requirement) {
    return shownText(title(requirement.kind)) + QLatin1Char(' ') + shownText(requirement.version);
}

QString requirementsHelp(const Project& project) {
    QStringList lines;
    for (const Project::Requirement& each : project.requirements)
        lines.append(label(each) + QStringLiteral(" — from ") + shownText(each.source));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

ProjectListModel::ProjectListModel(AppModel& model, std::function<Date()> now, QObject* parent)
    : RecordModel(QMetaEnum::fromType<Role>(), {}, parent),
      m_model(&model),
      m_now(std::move(now)) {
    connect(&model, &AppModel::reportChanged, this, &ProjectListModel::takeReport);
    takeReport();
}

void ProjectListModel::reveal(int row) {
    if (m_model && hasRow(row))
        m_model->reveal({record(row).url});
}

QVariant ProjectListModel::value(std::size_t position, int role) const {
    const Project& project = (*records())[position];
    switch (static_cast<Role>(role)) {
    case Role::path:
        return shownText(project.url.path());
    case Role::name:
        return shownText(project.name);
    case Role::kind:
        return shownText(rawValue(project.kind));
    case Role::lastActivity:
        return shownDate(project.lastActivity);
    case Role::activityText:
        return activityText(project);
    case Role::requirements:
        return requirementsLine(project);
    case Role::requirementsHelp:
        return tidewright::requirementsHelp(project);
    }
    return {};
}

void ProjectListModel::takeReport() {
    const Records projects = recordsOf(m_model->report(), &ScanReport::projects);
    Rows rows = allOf(projects);
    std::erase_if(rows, [&](std::size_t position) {
        const Project& project = (*projects)[position];
        return project.kind == Project::Kind::node && project.requirements.empty();
    });
    show(projects, std::move(rows));
}

QString ProjectListModel::activityText(const Project& project) const {
    const auto days = project.daysSinceActivity(m_now());
    if (!days)
        return {};
    return *days == 0 ? tr("Changed today") : tr("Changed %1 days ago").arg(*days);
}

QString ProjectListModel::requirementsLine(const Project& project) {
    QStringList labels;
    for (const Project::Requirement& each : project.requirements)
        if (each.kind != RequirementKind::node)
            labels.append(label(each));
    return labels.isEmpty() ? tr("No pinned toolchain") : labels.join(QStringLiteral(" · "));
}

} // namespace tidewright

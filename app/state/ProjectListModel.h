// The projects that the last scan found, and what each of them needs.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. Projects of plain Node that need nothing are left out. When the AppModel is
/// gone it goes on showing what it showed.
class ProjectListModel : public RecordModel<Project> {
    Q_OBJECT

public:
    enum class Role {
        path = Qt::UserRole,
        name,
        kind,             ///< the user's word
        lastActivity,     ///< a date, invalid where it is not known
        activityText,     ///< empty where it is not known
        requirements,     ///< in a line
        requirementsHelp, ///< a line for each, with where it was read
    };
    Q_ENUM(Role)

    explicit ProjectListModel(AppModel& model,
                              std::function<Date()> now = currentDate,
                              QObject* parent = nullptr);

    /// Shows the project in the file manager.
    Q_INVOKABLE void reveal(int row);

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const Project& project) const override { return project.url.path(); }

private:
    void takeReport();
    QString activityText(const Project& project) const;
    static QString requirementsLine(const Project& project);

    QPointer<AppModel> m_model;
    std::function<Date()> m_now;
};

} // namespace tidewright

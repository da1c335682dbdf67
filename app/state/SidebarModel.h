// The rows of the main window's sidebar: the screens and the categories, each with what waits
// there.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

struct SidebarRow {
    std::string destination; ///< the name of the screen
    QString title;
    QString symbolName;
    QString section;
    QString badge;
    QString sizeText;

    bool operator==(const SidebarRow&) const = default;
};

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class SidebarModel : public RecordModel<SidebarRow> {
    Q_OBJECT
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged)

public:
    enum class Role {
        destination = Qt::UserRole, ///< as AppModel's `destinationName`
        title,
        symbolName,
        section,  ///< the heading, empty for the first rows
        badge,    ///< a number; empty where there is none
        sizeText, ///< what is selected in a category; empty where nothing is
    };
    Q_ENUM(Role)

    explicit SidebarModel(AppModel& model, QObject* parent = nullptr);

    /// That of the screen which is shown.
    int currentRow() const { return m_currentRow; }
    /// Shows the row's screen.
    Q_INVOKABLE void open(int row);

Q_SIGNALS:
    void currentRowChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const SidebarRow& row) const override { return row.destination; }

private:
    void update();
    void takeDestination();
    SidebarRow categoryRow(Category category, const QString& section) const;
    QString insightsBadge() const;

    QPointer<AppModel> m_model;
    int m_currentRow = -1;
};

} // namespace tidewright

// One of the settings' lists of folders.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/FolderEntry.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Which list of the settings it is.
struct PathList {
    const std::vector<URL>& (SettingsStore::*paths)() const = nullptr;
    void (SettingsStore::*set)(std::vector<URL>) = nullptr;
    void (SettingsStore::*changed)() = nullptr; ///< its signal
};

/// Main thread only. When the AppModel is gone it goes on showing what it showed. The message of
/// `empty` stands in place of the rows where there are none.
class PathListModel : public RecordModel<URL> {
    Q_OBJECT
    Q_PROPERTY(bool isPicking READ isPicking NOTIFY isPickingChanged)
    Q_PROPERTY(tidewright::FolderEntry* entry READ entry CONSTANT)

public:
    enum class Role {
        path = Qt::UserRole,
        removeText,
    };
    Q_ENUM(Role)

    PathListModel(AppModel& model,
                  const PathList& list,
                  const QString& emptyText,
                  QObject* parent = nullptr);

    /// Takes what the row shows out of the list.
    Q_INVOKABLE void remove(int row);
    /// Appends those that are not in the list.
    void add(const std::vector<URL>& folders);

    /// Has the user pick folders to add in the system's dialog, or where there is none, type one.
    Q_INVOKABLE void pick();
    bool isPicking() const { return m_isPicking; } ///< the dialog is open

    /// What the user types where the system has no dialog.
    FolderEntry* entry() { return &m_entry; }
    /// Adds the folder that is typed; false where it names none.
    Q_INVOKABLE bool addEntry();

    /// The number of the window that asks, where the desktop is X11; else 0.
    void setWindow(std::function<Int64()> window) { m_window = std::move(window); }

Q_SIGNALS:
    void isPickingChanged();
    void entryWanted();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const URL& url) const override { return url.path(); }

private:
    void takePaths();
    void setPicking(bool isPicking);
    void endPicking(const std::optional<std::vector<URL>>& folders);

    QPointer<AppModel> m_model;
    PathList m_list;
    QString m_emptyText;
    FolderEntry m_entry;
    bool m_isPicking = false;
    std::function<Int64()> m_window = [] { return Int64{0}; };
};

} // namespace tidewright

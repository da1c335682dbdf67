// Large personal files that the last scan came across.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class LargeFileListModel : public RecordModel<LargeFile> {
    Q_OBJECT
    Q_PROPERTY(tidewright::ByteCount shown READ shown NOTIFY shownChanged)

public:
    enum class Role {
        path = Qt::UserRole,
        name,
        modified,     ///< a date, invalid where it is not known
        modifiedText, ///< how long ago; empty where it is not known
        sizeBytes,
        sizeText,
    };
    Q_ENUM(Role)

    explicit LargeFileListModel(AppModel& model,
                                std::function<Date()> now = currentDate,
                                QObject* parent = nullptr);

    ByteCount shown() const { return m_shown; } ///< of all rows

    /// Shows the file in the file manager.
    Q_INVOKABLE void reveal(int row);

Q_SIGNALS:
    void shownChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const LargeFile& file) const override { return file.url.path(); }

private:
    void takeReport();
    EmptyText emptyText() const;

    QPointer<AppModel> m_model;
    std::function<Date()> m_now;
    ByteCount m_shown;
};

} // namespace tidewright

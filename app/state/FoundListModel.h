// What a scan came across for the user to act on by hand: a table of name, date and size.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/TableModel.h"

namespace tidewright {

/// An application or a file; the location is its identity.
struct Found {
    URL url;
    std::string name;
    std::optional<Date> date;    ///< of the last use or change
    std::optional<Date> addedOn; ///< known of applications
    Int64 sizeBytes = 0;

    bool operator==(const Found&) const = default;
};

/// Main thread only. When the AppModel is gone it goes on showing what it showed. Names sort as the
/// user's language has them; rows without a date come last in either direction.
class FoundListModel : public RecordModel<Found, TableModel> {
    Q_OBJECT
    Q_PROPERTY(tidewright::ByteCount shown READ shown NOTIFY shownChanged)

public:
    enum class Role {
        path = Qt::UserRole,
        name,
        folder,   ///< the path of the one that it is in
        date,     ///< invalid where it is not known
        dateText, ///< how long ago, in words; may be empty where it is not known
        sizeBytes,
        sizeText,
    };
    Q_ENUM(Role)

    enum class Column { name, date, size };
    Q_ENUM(Column)

    ByteCount shown() const { return m_shown; } ///< of all rows

    /// Shows the file in the file manager.
    Q_INVOKABLE void reveal(int row);

Q_SIGNALS:
    void shownChanged();

protected:
    /// `columns` are the titles.
    FoundListModel(AppModel& model,
                   QStringList columns,
                   std::function<Date()> now,
                   QObject* parent);

    const QPointer<AppModel>& model() const { return m_model; }
    Date now() const { return m_now(); }

    virtual QString dateText(const Found& found) const;
    /// A row for each.
    void showFound(std::vector<Found> found);

    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const Found& found) const override { return found.url.path(); }
    Rows sortedRows() override;
    bool startsWith(std::size_t position, const std::string& beginning) override;

private:
    Rows ordered(const std::vector<Found>& found) const;

    QPointer<AppModel> m_model;
    std::function<Date()> m_now;
    ByteCount m_shown;
    std::vector<std::string> m_foldedNames; ///< by position; made when one is first looked for
};

} // namespace tidewright

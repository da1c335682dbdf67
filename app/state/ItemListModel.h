// The items of one category: a table to filter, search, sort and select in, and everything that
// is said of each item.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/ItemDetails.h"
#include "app/state/TableModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class ItemListModel : public RecordModel<ScanItem, TableModel> {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString symbolName READ symbolName CONSTANT)
    Q_PROPERTY(QString description READ description CONSTANT)
    Q_PROPERTY(Filter filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(tidewright::ItemDetails focused READ focused NOTIFY focusedChanged)
    Q_PROPERTY(int total READ total NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount selected READ selected NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount optional READ optional NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount kept READ kept NOTIFY figuresChanged)
    Q_PROPERTY(tidewright::ByteCount shown READ shown NOTIFY figuresChanged)

public:
    enum class Role {
        itemID = Qt::UserRole, ///< bytes; they need not be UTF-8
        title,
        version, ///< empty where there is none
        group,
        sizeBytes,
        sizeText,
        decision, ///< "clean", "ask", "keep" or "info"
        decisionTitle,
        decisionSymbol,
        risk, ///< "safe", "low", "check" or "leave"
        riskTitle,
        reason,
        whatItIs,
        afterEffect,
        methodLabel,
        howItIsCleaned,     ///< the command, or the label of any other method
        manualInstructions, ///< empty unless the user must clean it
        inUse,              ///< a sentence; empty where nobody holds it
        lastUsed,           ///< a date, invalid where it is not known
        locationsTitle,
        locations,     ///< the first few paths
        moreLocations, ///< how many more there are, in words; empty where there are none
        selected,
        selectable,
    };
    Q_ENUM(Role)

    enum class Filter { all, cleanable, kept };
    Q_ENUM(Filter)

    enum class Column { selected, item, size, status };
    Q_ENUM(Column)

    ItemListModel(AppModel& model,
                  Category category,
                  std::function<Date()> now = currentDate,
                  QObject* parent = nullptr);

    QString title() const; ///< of the category
    QString symbolName() const;
    QString description() const;

    Filter filter() const { return m_filter; }
    void setFilter(Filter filter);
    /// Found in title, group, version or reason, without regard to case by the user's language.
    const QString& search() const { return m_search; }
    void setSearch(const QString& search);

    /// Of the focused row; its dates are told as they were when it last changed.
    const ItemDetails& focused() const { return m_details; }

    int total() const { return m_figures.total; } ///< items of the category
    /// Of the category's items whose id is selected.
    ByteCount selected() const { return m_figures.selected; }
    ByteCount optional() const { return m_figures.optional; } ///< of those to ask about
    ByteCount kept() const { return m_figures.kept; }         ///< of those to keep
    ByteCount shown() const { return m_figures.shown; }       ///< of all rows

    /// Nothing where the item may not be selected.
    Q_INVOKABLE void setSelected(int row, bool on);
    /// Shows the item's locations in the file manager.
    Q_INVOKABLE void reveal(int row);

Q_SIGNALS:
    void filterChanged();
    void searchChanged();
    void focusedChanged();
    void figuresChanged();

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const ScanItem& item) const override { return item.id; }
    Rows sortedRows() override;
    bool startsWith(std::size_t position, const std::string& beginning) override;
    void updateFocus() override;

private:
    struct Figures {
        int total = 0;
        ByteCount selected;
        ByteCount optional;
        ByteCount kept;
        ByteCount shown;
        bool operator==(const Figures&) const = default;
    };
    /// What is known of the records; positions are those in the report.
    struct Known {
        Rows order;                         ///< the category's items in the order asked for
        std::vector<bool> isSelected;       ///< by position
        std::vector<std::string> searched;  ///< folded, by position; made for the first search
        std::vector<std::string> titleKeys; ///< by position; made for the first sort by title
    };

    void takeReport();
    void takeSelection();
    void refilter();
    void rowsChanged();
    void updateDetails();
    void setFigures(const Figures& figures);
    EmptyText emptyText() const;

    Rows ordered(const std::vector<ScanItem>& items, Known& known) const;
    Rows filtered(const std::vector<ScanItem>& items, Known& known) const;
    static void prepareSearch(const std::vector<ScanItem>& items, Known& known);
    std::vector<bool> selectionOf(const std::vector<ScanItem>& items) const;
    Figures figuresOfCategory() const;

    QPointer<AppModel> m_model;
    Category m_category;
    std::function<Date()> m_now;
    Filter m_filter = Filter::all;
    QString m_search;
    std::string m_needle; ///< the search, folded
    bool m_isScanned = false;
    Known m_known;
    Figures m_figures;
    ItemDetails m_details;
    /// The one item whose selection this is about to change.
    std::optional<std::size_t> m_toggled;
};

} // namespace tidewright

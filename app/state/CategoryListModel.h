// The categories as the overview shows them: what is selected in each, and what is kept.
#pragma once

#include "app/state/AppModel.h"
#include "app/state/RowModel.h"

namespace tidewright {

struct CategoryTile {
    Category category = Category::android;
    Int64 reclaimable = 0; ///< bytes
    Int64 kept = 0;        ///< bytes

    bool operator==(const CategoryTile&) const = default;
};

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class CategoryListModel : public RecordModel<CategoryTile> {
    Q_OBJECT

public:
    enum class Role {
        category = Qt::UserRole, ///< its raw value
        title,
        symbolName,
        headline, ///< the size of what is selected, or that nothing is
        isTidy,   ///< whether nothing is selected
        caption,
        hint, ///< what opening it does
    };
    Q_ENUM(Role)

    explicit CategoryListModel(AppModel& model, QObject* parent = nullptr);

    /// Shows the category's screen.
    Q_INVOKABLE void open(int row);

protected:
    QVariant value(std::size_t position, int role) const override;
    std::string_view key(const CategoryTile& tile) const override {
        return rawValue(tile.category);
    }

private:
    void takeReport();
    void update();

    QPointer<AppModel> m_model;
    std::vector<Int64> m_kept; ///< by category
};

} // namespace tidewright

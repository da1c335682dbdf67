#include "app/state/ScreenModels.h"

namespace tidewright {

namespace {

constexpr int topInsightCount = 4;

} // namespace

ScreenModels::ScreenModels(AppModel& model, std::function<Date()> now, QObject* parent)
    : QObject(parent),
      m_app(model),
      m_now(std::move(now)) {
    m_topInsights.setLimit(topInsightCount);
}

ItemListModel* ScreenModels::items(const QString& category) const {
    for (const Category each : allCases<Category>())
        if (shownText(rawValue(each)) == category)
            return new ItemListModel(m_app, each, m_now);
    return nullptr;
}

void ScreenModels::showMap(bool shown) {
    if (m_wantsMap == shown)
        return;
    m_wantsMap = shown;
    Q_EMIT mapShownChanged();
}

} // namespace tidewright

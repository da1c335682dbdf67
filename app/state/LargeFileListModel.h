// Large personal files that the last scan came across.
#pragma once

#include "app/state/FoundListModel.h"

namespace tidewright {

/// Main thread only. When the AppModel is gone it goes on showing what it showed.
class LargeFileListModel : public FoundListModel {
    Q_OBJECT

public:
    explicit LargeFileListModel(AppModel& model,
                                std::function<Date()> now = currentDate,
                                QObject* parent = nullptr);

private:
    void takeReport();
    EmptyText emptyText() const;
};

} // namespace tidewright

#include "app/state/HistoryStore.h"

namespace tidewright {

HistoryStore::HistoryStore(const URL& directory, QObject* parent)
    : QObject(parent),
      m_fileURL(directory.appending("history.json")) {}

} // namespace tidewright

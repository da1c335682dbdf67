#include "app/state/DiskMonitor.h"
namespace tidewright {
DiskMonitor::~DiskMonitor() = default;
} // namespace tidewright

#include "app/state/AppModel.h"
namespace tidewright {
AppModel::~AppModel() = default;
} // namespace tidewright

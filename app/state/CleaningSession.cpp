#include "app/state/CleaningSession.h"
namespace tidewright {
CleaningSession::~CleaningSession() = default;
} // namespace tidewright

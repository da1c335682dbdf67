// Finding the Android SDK and the emulators of a user.
#pragma once

#include "core/model/AndroidEnvironment.h" // declares AndroidEnvironment::discover, defined here

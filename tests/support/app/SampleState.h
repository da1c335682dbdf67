// The program's state on a sample home for a test: all of it is real but the posting of
// notifications.
#pragma once

#include "app/state/AppModel.h"
#include "samples/SampleHome.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TempHome.h"
#include "tests/support/app/StateTesting.h"

#include <gtest/gtest.h>

namespace tidewright::test {

/// The parts are public. What the program asks its environment for lies in the home.
struct SampleState {
    SampleState() {
        const auto built = SampleHome{.folder = home}.build();
        EXPECT_TRUE(built) << (built ? "" : built.error().sentence);
    }

    static AppEnvironment environment() {
        AppEnvironment environment = AppEnvironment::current();
        environment.monitorSystem.post = inertMonitorSystem().post;
        return environment;
    }

    TempHome place;
    URL home = place.path("home");
    ScopedVariable homeVariable{"HOME", home.path()};
    ScopedVariable temporary{"TMPDIR", home.appending(SampleHome::temporaryFolder).path()};
    ScopedVariable dataFolder{"XDG_DATA_HOME", std::nullopt};
    ScopedVariable stateFolder{"XDG_STATE_HOME", std::nullopt};
    ScopedVariable configFolder{"XDG_CONFIG_HOME", std::nullopt};
    Workers workers;
    DefaultsStore defaults{DefaultsStore::inFile(place.path("settings.conf"))};
    AppModel model{environment(), defaults, workers};
};

} // namespace tidewright::test

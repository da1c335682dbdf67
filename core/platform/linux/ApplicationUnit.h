// Which applications a process belongs to, by the names of its control groups: service managers
// give each application that a desktop starts a unit of its own. Text only.
//
// The names follow "XDG standardization for applications" of systemd's page Desktop Environment
// Integration (https://systemd.io/DESKTOP_ENVIRONMENTS/):
//     app[-<launcher>]-<ApplicationID>-<RANDOM>.scope    (and .slice)
//     app[-<launcher>]-<ApplicationID>[@<RANDOM>].service
// an earlier version of it had "-<RANDOM>.service". Applications that the message bus starts are in
// "dbus-<number>-<name on the bus>@<number>.service", those from a snap in
// "snap.<snap>.<application>-<uuid>.scope". Escapes are those of systemd.unit(5).
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace tidewright {

/// The identifiers that a unit's name may stand for; none when it is not an application's.
/// Launchers that leave dashes unescaped make a name ambiguous: then every reading is given.
std::set<std::string> applicationsOfUnit(std::string_view unit);

/// The same for all units in the text of a process's "cgroup" file (proc(5), cgroups(7)).
std::set<std::string> applicationsOfControlGroups(std::string_view text);

} // namespace tidewright

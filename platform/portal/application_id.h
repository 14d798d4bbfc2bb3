#pragma once

#include <string>
#include <string_view>

namespace platform::portal {

/// The name under which the desktop keeps our permission: that of the launcher's scope in `cgroup`,
/// the text of /proc/self/cgroup; empty for a program that was started from a terminal. The portal
/// derives it for itself in the same way.
std::string applicationId(std::string_view cgroup);

/// For this process.
std::string applicationId();

}  // namespace platform::portal

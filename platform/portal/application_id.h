#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace platform::portal {

/// The names under which a portal may keep our permission, to be tried in this order. `cgroup`: the
/// text of /proc/PID/cgroup, from which the portal reads our name, too: that of the unit in which a
/// launcher started us, as app-gnome-ID-123.scope. It is empty for a program that was started from
/// a terminal. Names with fewer than two dots count as none up to version 1.16 of the portal and as
/// names later, so that both are to be tried then.
std::vector<std::string> applicationIds(std::string_view cgroup);

/// The same, from that file.
std::vector<std::string> readApplicationIds(const std::filesystem::path& cgroup);

}  // namespace platform::portal

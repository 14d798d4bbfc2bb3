#include "platform/portal/application_id.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace platform::portal {
namespace {

// The text up to the separator, which is taken away with it.
std::string_view takeUntil(char separator, std::string_view& text) {
  const std::string_view part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

// The unit that the user's service manager runs us in: below it in the path of a control group, the
// first that is no slice.
std::string_view unitIn(std::string_view path) {
  bool isBelowManager = false;
  while (!path.empty()) {
    const std::string_view part = takeUntil('/', path);
    if (isBelowManager && !part.ends_with(".slice")) return part;
    isBelowManager = isBelowManager || (part.starts_with("user@") && part.ends_with(".service"));
  }
  return {};
}

bool removeSuffix(std::string_view& text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

bool isAlphanumeric(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  });
}

// systemd writes what is special in the name of a unit as \x and two digits.
std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
      const std::string digits(text.substr(i + 2, 2));
      plain += static_cast<char>(std::strtol(digits.c_str(), nullptr, 16));
      i += 3;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

// By the desktop's convention the names of such units are app[-launcher]-id-random.scope and
// app[-launcher]-id[@random].service; some end in -autostart before the dot. Empty for another one.
std::string_view idIn(std::string_view unit) {
  if (!unit.starts_with("app-")) return {};
  if (!removeSuffix(unit, ".scope") && !removeSuffix(unit, ".service")) return {};
  unit.remove_prefix(std::string_view("app-").size());
  removeSuffix(unit, "-autostart");
  const auto random = unit.find_last_of("-@");
  if (random != std::string_view::npos && isAlphanumeric(unit.substr(random + 1))) {
    unit = unit.substr(0, random);
  }
  const auto launcher = unit.find('-');
  if (launcher != std::string_view::npos && isAlphanumeric(unit.substr(0, launcher))) {
    unit.remove_prefix(launcher + 1);
  }
  return unit;
}

}  // namespace

std::vector<std::string> applicationIds(std::string_view cgroup) {
  while (!cgroup.empty()) {
    const std::string_view id = idIn(unitIn(takeUntil('\n', cgroup)));
    if (id.empty()) continue;
    if (std::count(id.begin(), id.end(), '.') >= 2) return {unescaped(id)};
    return {unescaped(id), ""};
  }
  return {""};
}

std::vector<std::string> readApplicationIds(const std::filesystem::path& cgroup) {
  std::ifstream file(cgroup);
  const std::string text(std::istreambuf_iterator<char>(file), {});
  return applicationIds(text);
}

}  // namespace platform::portal

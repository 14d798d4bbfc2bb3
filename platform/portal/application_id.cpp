#include "platform/portal/application_id.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace platform::portal {
namespace {

// systemd writes what is special in the name of a unit as \x and two digits.
std::string unescaped(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 3 < text.size() && text[i + 1] == 'x') {
      plain += static_cast<char>(std::strtol(text.substr(i + 2, 2).c_str(), nullptr, 16));
      i += 3;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

}  // namespace

// Names of the form app[-launcher]-id-random.scope, by the desktop's convention for scopes.
std::string applicationId(std::string_view cgroup) {
  constexpr std::string_view kStart = "/app-";
  constexpr std::string_view kEnd = ".scope";
  const auto start = cgroup.rfind(kStart);
  if (start == std::string_view::npos) return {};
  std::string_view name = cgroup.substr(start + kStart.size());
  name = name.substr(0, name.find_first_of("/\n"));
  if (!name.ends_with(kEnd)) return {};
  name.remove_suffix(kEnd.size());
  name = name.substr(0, name.rfind('-'));
  if (const auto launcher = name.find('-'); launcher != std::string_view::npos) {
    name.remove_prefix(launcher + 1);
  }
  return unescaped(std::string(name));
}

std::string applicationId() {
  std::ifstream file("/proc/self/cgroup");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  return applicationId(std::string_view(text));
}

}  // namespace platform::portal

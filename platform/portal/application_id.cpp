#include "platform/portal/application_id.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>

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
  static const std::regex kScope(R"(/app-(?:[[:alnum:]]+-)?([^/\n]+?)-[[:alnum:]]*\.scope)");
  std::match_results<std::string_view::const_iterator> found;
  if (!std::regex_search(cgroup.begin(), cgroup.end(), found, kScope)) return {};
  return unescaped(found[1].str());
}

std::string applicationId() {
  std::ifstream file("/proc/self/cgroup");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  return applicationId(std::string_view(text));
}

}  // namespace platform::portal

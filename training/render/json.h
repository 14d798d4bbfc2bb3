#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace training::render {

/// A JSON value as the skeleton files use it; booleans and null read as numbers.
struct Json {
  std::map<std::string, Json> members;
  std::vector<Json> items;
  std::string text;
  double number = 0;

  /// The member `name`; an empty value when there is none.
  const Json& operator[](const std::string& name) const;
};

/// Throws std::runtime_error for what is not JSON.
Json parseJson(std::string_view source);

}  // namespace training::render

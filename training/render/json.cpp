#include "json.h"

#include <cctype>
#include <cstdlib>
#include <stdexcept>

namespace training::render {
namespace {

class Parser {
 public:
  explicit Parser(std::string_view source) : rest_(source) {}

  Json value() {
    skipSpace();
    switch (peek()) {
      case '{':
        return object();
      case '[':
        return array();
      case '"': {
        Json json;
        json.text = string();
        return json;
      }
      default:
        return scalar();
    }
  }

 private:
  char peek() const {
    if (rest_.empty()) throw std::runtime_error("JSON ends too early");
    return rest_.front();
  }
  void skipSpace() {
    while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_.front())))
      rest_.remove_prefix(1);
  }
  bool accept(char c) {
    skipSpace();
    if (peek() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void expect(char c) {
    if (!accept(c)) throw std::runtime_error(std::string("JSON lacks a ") + c);
  }
  Json object() {
    Json json;
    expect('{');
    if (accept('}')) return json;
    do {
      skipSpace();
      std::string name = string();
      expect(':');
      json.members.emplace(std::move(name), value());
    } while (accept(','));
    expect('}');
    return json;
  }
  Json array() {
    Json json;
    expect('[');
    if (accept(']')) return json;
    do {
      json.items.push_back(value());
    } while (accept(','));
    expect(']');
    return json;
  }
  std::string string() {
    expect('"');
    std::string text;
    while (peek() != '"') {
      if (peek() == '\\') rest_.remove_prefix(1);
      text += peek();
      rest_.remove_prefix(1);
    }
    rest_.remove_prefix(1);
    return text;
  }
  Json scalar() {
    size_t end = 0;
    while (end < rest_.size() && (std::isalnum(static_cast<unsigned char>(rest_[end])) ||
                                  rest_[end] == '-' || rest_[end] == '+' || rest_[end] == '.')) {
      ++end;
    }
    if (end == 0) throw std::runtime_error("JSON has an unexpected character");
    Json json;
    json.text = std::string(rest_.substr(0, end));
    json.number = json.text == "true" ? 1 : std::strtod(json.text.c_str(), nullptr);
    rest_.remove_prefix(end);
    return json;
  }

  std::string_view rest_;
};

}  // namespace

const Json& Json::operator[](const std::string& name) const {
  static const Json kNone;
  const auto found = members.find(name);
  return found == members.end() ? kNone : found->second;
}

Json parseJson(std::string_view source) {
  return Parser(source).value();
}

}  // namespace training::render

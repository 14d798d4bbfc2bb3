#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace platform {

/// Why something failed, in words for the technical details of an error banner.
struct Error {
  std::string description;

  friend bool operator==(const Error&, const Error&) = default;
};

/// A value, or the reason why there is none.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}

  bool ok() const { return content_.index() == 0; }
  explicit operator bool() const { return ok(); }

  const T& value() const& {
    assert(ok());
    return *std::get_if<0>(&content_);
  }
  T&& value() && {
    assert(ok());
    return std::move(*std::get_if<0>(&content_));
  }
  const Error& error() const {
    assert(!ok());
    return *std::get_if<1>(&content_);
  }

 private:
  std::variant<T, Error> content_;
};

/// Success, or the reason of the failure.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : error_(std::move(error)) {}

  bool ok() const { return !error_; }
  explicit operator bool() const { return ok(); }
  const Error& error() const {
    assert(!ok());
    return *error_;
  }

 private:
  std::optional<Error> error_;
};

}  // namespace platform

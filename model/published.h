#pragma once

#include <utility>

#include "model/app_model_observer.h"

namespace model {

/// Where published values announce themselves.
class Announcer {
 public:
  virtual void announce(Property property) = 0;

 protected:
  ~Announcer() = default;
};

/// A value that announces each change before it is made.
template <class T>
class Published {
 public:
  Published(Announcer& announcer, Property property, T initial)
      : announcer_(announcer), property_(property), value_(std::move(initial)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  const T& get() const { return value_; }

  /// Announces, then writes, also when the value stays the same.
  void set(T value) {
    announcer_.announce(property_);
    value_ = std::move(value);
  }

  /// For values that are computed again and again: wakes nobody when nothing changed.
  void setIfChanged(T value) {
    if (value_ != value) set(std::move(value));
  }

 private:
  Announcer& announcer_;
  const Property property_;
  T value_;
};

}  // namespace model

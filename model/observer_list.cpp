#include "model/observer_list.h"

#include <algorithm>
#include <cassert>
#include <cstddef>

namespace model {

void ObserverList::add(AppModelObserver& observer) {
  assert(std::find(observers_.begin(), observers_.end(), &observer) == observers_.end());
  observers_.push_back(&observer);
}

void ObserverList::remove(AppModelObserver& observer) {
  const auto place = std::find(observers_.begin(), observers_.end(), &observer);
  if (place == observers_.end()) return;
  if (announcing_ > 0) {
    *place = nullptr;  // The announcement counts through the list: nobody may move up in it.
  } else {
    observers_.erase(place);
  }
}

void ObserverList::announce(Property property) {
  ++announcing_;
  const std::size_t count = observers_.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (observers_[i] != nullptr) observers_[i]->willChange(property);
  }
  if (--announcing_ == 0) std::erase(observers_, nullptr);
}

}  // namespace model

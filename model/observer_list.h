#pragma once

#include <vector>

#include "model/app_model_observer.h"
#include "model/published.h"

namespace model {

/// Passes announcements on to observers in the order they came. Observers may come, go and cause
/// further announcements while one is under way: who has left hears nothing more, who has just
/// come hears from the next announcement on. Main thread only.
class ObserverList final : public Announcer {
 public:
  /// `observer` is not in the list yet, and must be removed before it ends.
  void add(AppModelObserver& observer);
  /// Ignores an observer that is not in the list.
  void remove(AppModelObserver& observer);

  void announce(Property property) override;

 private:
  std::vector<AppModelObserver*> observers_;  // Null where one left during an announcement.
  int announcing_ = 0;                        // Announcements under way, one within the other.
};

}  // namespace model

#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "model/app_model.h"

namespace support {

/// One announcement, and what the model showed for the property at that moment.
struct Announcement {
  model::Property property;
  std::string valueSeen;

  friend bool operator==(const Announcement&, const Announcement&) = default;
};

std::ostream& operator<<(std::ostream& out, const Announcement& announcement);

/// The value of a published property as text: "true", "0.35", "camera", "none".
std::string valueText(const model::AppModel& model, model::Property property);

/// Observes a model for as long as it lives and writes down every announcement.
class ObserverLog final : public model::AppModelObserver {
 public:
  explicit ObserverLog(model::AppModel& model);
  ~ObserverLog() override;
  ObserverLog(const ObserverLog&) = delete;
  ObserverLog& operator=(const ObserverLog&) = delete;

  void willChange(model::Property property) override;

  /// What was announced, in order.
  std::vector<Announcement> announcements;

 private:
  model::AppModel& model_;
};

}  // namespace support

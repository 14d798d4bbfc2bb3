#include "tests/support/observer_log.h"

#include <optional>
#include <sstream>

namespace support {

namespace {

using model::Property;

template <class T>
std::string text(const T& value) {
  std::ostringstream out;
  out << std::boolalpha << value;
  return out.str();
}

std::string text(const std::optional<std::string>& value) {
  return value.value_or("none");
}

std::string text(const model::CameraState& state) {
  using Kind = model::CameraState::Kind;
  switch (state.kind) {
    case Kind::failed:
      return "failed: " + state.message;
    case Kind::checking:
      return "checking";
    case Kind::needsPermission:
      return "needsPermission";
    case Kind::denied:
      return "denied";
    case Kind::restricted:
      return "restricted";
    case Kind::running:
      return "running";
    case Kind::mouseOnly:
      return "mouseOnly";
  }
  return {};
}

}  // namespace

std::string valueText(const model::AppModel& model, Property property) {
  switch (property) {
    case Property::cameraState:
      return text(model.cameraState());
    case Property::colorIndex:
      return text(model.colorIndex());
    case Property::background:
      return text(render::rawValue(model.background()));
    case Property::dim:
      return text(model.dim());
    case Property::glow:
      return text(model.glow());
    case Property::widthFromDistance:
      return text(model.widthFromDistance());
    case Property::manualWidth:
      return text(model.manualWidth());
    case Property::fadeEnabled:
      return text(model.fadeEnabled());
    case Property::fadeSeconds:
      return text(model.fadeSeconds());
    case Property::colorHand:
      return text(hand::rawValue(model.colorHand()));
    case Property::handStatus:
      return text(model.handStatus());
    case Property::strokeCount:
      return text(model.strokeCount());
    case Property::showClearConfirm:
      return text(model.showClearConfirm());
    case Property::showSaveChoice:
      return text(model.showSaveChoice());
    case Property::errorMessage:
      return text(model.errorMessage());
    case Property::errorDetails:
      return text(model.errorDetails());
    case Property::isRecording:
      return text(model.isRecording());
    case Property::recordSeconds:
      return text(model.recordSeconds());
  }
  return {};
}

std::ostream& operator<<(std::ostream& out, const Announcement& announcement) {
  return out << "property " << static_cast<int>(announcement.property) << " seen as \""
             << announcement.valueSeen << '"';
}

ObserverLog::ObserverLog(model::AppModel& model) : model_(model) {
  model_.addObserver(*this);
}

ObserverLog::~ObserverLog() {
  model_.removeObserver(*this);
}

void ObserverLog::willChange(Property property) {
  announcements.push_back({property, valueText(model_, property)});
}

}  // namespace support

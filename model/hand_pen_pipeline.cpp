#include "model/app_model.h"

namespace model {

void AppModel::apply(const hand::HandOutput& output) {
  handStatus_.setIfChanged(!output.pen ? "No hand" : output.pen->down ? "Drawing" : "Pen up");
}

}  // namespace model

#include "tools/replay/trace.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "platform/recorded/hand_log.h"

namespace replay {
namespace {

using Json = nlohmann::ordered_json;

/// To a thousandth of a millisecond.
double rounded(double milliseconds) {
  return std::round(milliseconds * 1000) / 1000;
}

}  // namespace

void write(const TraceLine& line, std::ostream& out) {
  Json json;
  json["frame"] = line.frame;
  if (line.hands) {
    json.update(Json::parse(platform::toLine({line.time, *line.hands})));
  } else {
    json["time"] = line.time;
  }
  json["pen"] = nullptr;
  if (const auto& pen = line.output.pen) {
    json["pen"] = {{"x", pen->x}, {"y", pen->y}, {"size", pen->size}, {"down", pen->down}};
  }
  json["spread"] = line.output.spread;
  json["handCount"] = line.output.handCount;
  json["status"] = line.status;
  json["colorIndex"] = line.colorIndex;
  json["strokeCount"] = line.strokeCount;
  json["milliseconds"] = {{"decode", rounded(line.milliseconds.decode)},
                          {"detect", rounded(line.milliseconds.detect)},
                          {"model", rounded(line.milliseconds.model)},
                          {"draw", rounded(line.milliseconds.draw)}};
  out << json.dump() << '\n';
}

}  // namespace replay

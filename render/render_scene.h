#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "pixels/image.h"
#include "strokes/stroke.h"

namespace render {

/// What lies under the strokes.
enum class CanvasBackground { camera, black, white, transparent };

inline constexpr std::array allBackgrounds{CanvasBackground::camera, CanvasBackground::black,
                                           CanvasBackground::white, CanvasBackground::transparent};

/// The backgrounds a person can pick; transparent exists for saving the painting alone.
inline constexpr std::array userChoices{CanvasBackground::camera, CanvasBackground::black,
                                        CanvasBackground::white};

/// "camera", "black", "white" or "transparent".
std::string_view rawValue(CanvasBackground background);
std::optional<CanvasBackground> canvasBackgroundFrom(std::string_view rawValue);

/// Where the pen is, shown above the strokes.
struct CursorState {
  double x = 0;       ///< 0 to 1 from the left.
  double y = 0;       ///< 0 to 1 from the top.
  bool down = false;  ///< The pen touches the canvas.
  double width = 0;   ///< Reference units, as strokes::StrokePoint::w.
  int colorIndex = 0;

  friend bool operator==(const CursorState&, const CursorState&) = default;
};

/// Everything one picture of the canvas needs. A snapshot: later changes of the painting do not
/// reach it, and it shares points and camera pixels instead of copying them.
struct RenderScene {
  CanvasBackground background = CanvasBackground::camera;
  std::optional<pixels::Image> frame;    ///< The latest camera picture, not mirrored.
  double dim = 0;                        ///< Darkening of the camera picture: 0 none, 1 black.
  std::vector<strokes::Stroke> strokes;  ///< Oldest first.
  double now = 0;                        ///< Seconds, the clock of Stroke::lastTime.
  bool glow = false;
  bool fadeEnabled = false;
  double fadeSeconds = 0;
  std::optional<CursorState> cursor;
};

}  // namespace render

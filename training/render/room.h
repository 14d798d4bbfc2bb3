#pragma once

#include "random.h"
#include "record.h"
#include "studio.h"

namespace training::render {

/// A cluttered room, or whatever lies behind people: walls, furniture, windows, patterns,
/// and things that are coloured or shaped a little like hands. No labels.
Record randomRoom(Random& random, int width = kSceneWidth, int height = kSceneHeight);

}  // namespace training::render

/// training_render crops|painters|scenes|rooms HUMAN_FOLDER OUT COUNT SEED
///
/// Writes COUNT records (record.h) to OUT. The same seed gives the same pictures; OUT appears
/// only once it is whole, so a training that watches the folder never reads half a file.

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

#include "room.h"
#include "studio.h"

namespace {

using namespace training::render;

void renderAll(const std::string& what, const std::string& human, const std::string& path,
               int count, uint64_t seed) {
  const Human people(human);
  const Studio studio(people);
  const std::string unfinished = path + ".part";
  std::ofstream out(unfinished, std::ios::binary);
  for (int i = 0; i < count; ++i) {
    Random random(seed * 1'000'003 + static_cast<uint64_t>(i));
    write(what == "crops"      ? studio.crop(Occasion::close, random)
          : what == "painters" ? studio.crop(Occasion::painting, random)
          : what == "scenes"   ? studio.scene(random)
                               : randomRoom(random),
          out);
  }
  out.close();
  if (!out || std::rename(unfinished.c_str(), path.c_str()) != 0)
    throw std::runtime_error("cannot write " + path);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc == 6 ? argv[1] : "";
  if (what != "crops" && what != "painters" && what != "scenes" && what != "rooms") {
    std::fprintf(
        stderr, "usage: training_render crops|painters|scenes|rooms HUMAN_FOLDER OUT COUNT SEED\n");
    return 2;
  }
  try {
    renderAll(what, argv[2], argv[3], std::stoi(argv[4]), std::stoull(argv[5]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "training_render: %s\n", error.what());
    return 1;
  }
  return 0;
}

#include "human.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "json.h"

namespace training::render {
namespace {

std::string contents(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> armBoneNames() {
  std::vector<std::string> names = {"upperarm01", "upperarm02", "lowerarm01", "lowerarm02",
                                    "wrist"};
  for (int i = 1; i <= 4; ++i) names.push_back("metacarpal" + std::to_string(i));
  for (int f = 1; f <= 5; ++f) {
    for (int j = 1; j <= 3; ++j)
      names.push_back("finger" + std::to_string(f) + "-" + std::to_string(j));
  }
  return names;
}

std::vector<int> vertexList(const Json& list) {
  std::vector<int> vertices;
  for (const Json& item : list.items) vertices.push_back(static_cast<int>(item.number));
  return vertices;
}

Vec3 meanOf(const std::vector<int>& indices, const std::vector<Vec3>& vertices) {
  Vec3 sum;
  for (const int i : indices) sum += vertices[static_cast<size_t>(i)];
  return sum * (1.0f / static_cast<float>(indices.size()));
}

Binding strongest(const std::map<int, float>& weights) {
  std::vector<std::pair<float, int>> sorted;
  sorted.reserve(weights.size() + 1);
  for (const auto& [bone, weight] : weights) sorted.emplace_back(weight, bone);
  std::sort(sorted.rbegin(), sorted.rend());
  if (sorted.empty()) sorted.emplace_back(1.0f, kTrunk);
  sorted.resize(std::min<size_t>(4, sorted.size()));
  float sum = 0;
  for (const auto& [weight, bone] : sorted) sum += weight;
  Binding binding;
  for (size_t i = 0; i < sorted.size(); ++i) {
    binding.bone[i] = sorted[i].second;
    binding.weight[i] = sorted[i].first / sum;
  }
  return binding;
}

}  // namespace

Human::Human(const std::string& folder) {
  readMesh(folder + "/base.obj");
  readSkeleton(folder);
  readMorphs(folder + "/targets/macrodetails");
  readMorphs(folder + "/targets/armslegs");
  std::sort(morphs_.begin(), morphs_.end(),
            [](const Morph& a, const Morph& b) { return a.name < b.name; });
}

void Human::readMesh(const std::string& path) {
  static const std::map<std::string, Material> kDrawn = {{"body", Material::skin},
                                                         {"helper-tights", Material::clothes},
                                                         {"helper-hair", Material::hair},
                                                         {"helper-l-eye", Material::eye},
                                                         {"helper-r-eye", Material::eye}};
  std::istringstream file(contents(path));
  std::string line, group;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::string kind;
    words >> kind;
    if (kind == "v") {
      Vec3 v;
      words >> v.x >> v.y >> v.z;
      vertices_.push_back(v);
    } else if (kind == "g") {
      words >> group;
    } else if (kind == "f" && kDrawn.count(group) > 0) {
      std::vector<int> corners;
      for (std::string word; words >> word;) corners.push_back(std::stoi(word) - 1);
      for (size_t i = 2; i < corners.size(); ++i) {
        triangles_.push_back({{corners[0], corners[i - 1], corners[i]}, kDrawn.at(group)});
      }
    }
  }
}

void Human::readSkeleton(const std::string& folder) {
  const Json skeleton = parseJson(contents(folder + "/default.mhskel"));
  const Json weights = parseJson(contents(folder + "/default_weights.mhw"));
  const Json &bones = skeleton["bones"], &joints = skeleton["joints"];
  const std::vector<std::string> names = armBoneNames();
  std::map<std::string, int> known = {{"neck02", kHead}, {"neck03", kHead}, {"head", kHead}};
  for (int i = 0; i < kArmBones; ++i) {
    const std::string& name = names[static_cast<size_t>(i)];
    known[name + ".L"] = kLeftArm + i;
    known[name + ".R"] = kRightArm + i;
    const Json& bone = bones[name + ".L"];
    headVertices_[static_cast<size_t>(i)] = vertexList(joints[bone["head"].text]);
    tailVertices_[static_cast<size_t>(i)] = vertexList(joints[bone["tail"].text]);
    if (headVertices_[static_cast<size_t>(i)].empty())
      throw std::runtime_error("the skeleton lacks " + name);
  }
  neckVertices_ = vertexList(joints[bones["neck01"]["head"].text]);

  std::vector<std::map<int, float>> perVertex(vertices_.size());
  for (const auto& [name, list] : weights["weights"].members) {
    std::string ancestor = name;
    while (!ancestor.empty() && known.count(ancestor) == 0)
      ancestor = bones[ancestor]["parent"].text;
    const int bone = known.count(ancestor) > 0 ? known[ancestor] : kTrunk;
    for (const Json& pair : list.items) {
      perVertex.at(static_cast<size_t>(pair.items[0].number))[bone] +=
          static_cast<float>(pair.items[1].number);
    }
  }
  for (const auto& vertex : perVertex) bindings_.push_back(strongest(vertex));
}

void Human::readMorphs(const std::string& folder) {
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    Morph morph{entry.path().stem().string(), {}};
    std::istringstream file(contents(entry.path().string()));
    for (std::string line; std::getline(file, line);) {
      int vertex = 0;
      Vec3 move;
      if (std::sscanf(line.c_str(), "%d %f %f %f", &vertex, &move.x, &move.y, &move.z) == 4) {
        morph.moves.emplace_back(vertex, move);
      }
    }
    morphs_.push_back(std::move(morph));
  }
}

void Human::apply(const std::string& name, float amount, std::vector<Vec3>& vertices) const {
  if (amount < 0.01f) return;
  const auto found =
      std::lower_bound(morphs_.begin(), morphs_.end(), name,
                       [](const Morph& morph, const std::string& n) { return morph.name < n; });
  if (found == morphs_.end() || found->name != name) return;
  for (const auto& [vertex, move] : found->moves)
    vertices[static_cast<size_t>(vertex)] += move * amount;
}

void Human::placeBones(Body& body) const {
  for (size_t i = 0; i < kArmBones; ++i) {
    body.boneHead[i] = meanOf(headVertices_[i], body.vertices);
    body.boneTail[i] = meanOf(tailVertices_[i], body.vertices);
  }
  body.neck = meanOf(neckVertices_, body.vertices);
}

Body Human::neutralBody() const {
  Body body;
  body.vertices = vertices_;
  placeBones(body);
  return body;
}

Body Human::randomBody(Random& random) const {
  Body body;
  body.vertices = vertices_;
  const bool isMixed = random.chance(0.4f);
  const char* kOrigins[] = {"african", "asian", "caucasian"};
  const int first = random.below(3), second = random.below(3);
  const float share = isMixed ? random.unit() : 1.0f;
  const float male = random.chance(0.7f) ? std::round(random.unit()) : random.unit();
  const float old = random.chance(0.35f) ? random.unit() : 0.0f;
  const float child = old == 0 && random.chance(0.13f) ? random.between(0, 0.8f) : 0.0f;
  const std::pair<const char*, float> sexes[] = {{"female", 1 - male}, {"male", male}};
  const std::pair<const char*, float> ages[] = {
      {"child", child}, {"young", 1 - child - old}, {"old", old}};
  const auto thirds = [&](const char* what) {
    const float x = random.between(-1, 1);
    return std::array<std::pair<std::string, float>, 3>{
        {{std::string("min") + what, std::max(0.0f, -x)},
         {std::string("average") + what, 1 - std::abs(x)},
         {std::string("max") + what, std::max(0.0f, x)}}};
  };
  const auto muscles = thirds("muscle"), weights = thirds("weight");
  for (const auto& [sex, sexShare] : sexes) {
    for (const auto& [age, ageShare] : ages) {
      const std::string tail = std::string("-") + sex + "-" + age;
      apply(kOrigins[first] + tail, share * sexShare * ageShare, body.vertices);
      apply(kOrigins[second] + tail, (1 - share) * sexShare * ageShare, body.vertices);
      for (const auto& [muscle, muscleShare] : muscles) {
        for (const auto& [weight, weightShare] : weights) {
          apply("universal" + tail + "-" + muscle + "-" + weight,
                sexShare * ageShare * muscleShare * weightShare, body.vertices);
        }
      }
    }
  }
  const auto both = [&](const std::string& what, float x) {
    for (const char* side : {"l-", "r-"}) {
      apply(side + what + (x < 0 ? "-decr" : "-incr"), std::abs(x), body.vertices);
    }
  };
  both("hand-fingers-diameter", random.between(-0.9f, 0.7f));
  both("hand-fingers-distance", random.between(-0.8f, 0.8f));
  both("hand-fingers-length", random.between(-0.9f, 0.9f));
  both("hand-scale", random.between(-0.6f, 0.5f));
  both("lowerarm-fat", random.between(-0.6f, 0.6f));
  both("lowerarm-muscle", random.between(-0.6f, 0.6f));
  placeBones(body);
  return body;
}

}  // namespace training::render

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "platform/file_store.h"

namespace support {

/// Files in memory, or a disk that fails.
class FakeFileStore final : public platform::FileStore {
 public:
  platform::Result<void> replace(const std::filesystem::path& path,
                                 std::span<const std::uint8_t> bytes) override {
    if (failure) return *failure;
    files[path] = {bytes.begin(), bytes.end()};
    return {};
  }

  platform::Result<void> remove(const std::filesystem::path& path) override {
    if (failure) return *failure;
    if (files.erase(path) == 0) return platform::Error{"no such file"};
    return {};
  }

  std::map<std::filesystem::path, std::vector<std::uint8_t>> files;  ///< What lies where.
  std::optional<platform::Error> failure;  ///< When set, every write fails so and leaves `files`.
};

}  // namespace support

#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/save_panel.h"

namespace support {

/// A person who answers save panels as the test has written down, and cancels when nothing is left.
class FakeSavePanel final : public platform::SavePanel {
 public:
  void willAnswer(std::optional<std::filesystem::path> answer) {
    answers_.push_back(std::move(answer));
  }

  std::optional<std::filesystem::path> choose(const platform::SavePanelRequest& request) override {
    requests.push_back(request);
    if (whileOpen) whileOpen();
    if (answers_.empty()) return std::nullopt;
    auto answer = std::move(answers_.front());
    answers_.pop_front();
    return answer;
  }

  std::vector<platform::SavePanelRequest> requests;  ///< What was asked, in order.
  std::function<void()> whileOpen;                   ///< Runs while a panel is open.

 private:
  std::deque<std::optional<std::filesystem::path>> answers_;
};

}  // namespace support

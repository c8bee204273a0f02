#pragma once

#include <filesystem>
#include <vector>

#include "platform/FileSystem.h"

namespace platform::sim {

// Records the files the program asked the file manager to show.
class SimFileViewer final : public FileViewer {
  public:
    void activateFileViewerSelectingURLs(const std::vector<std::filesystem::path>& urls) override {
        selections_.push_back(urls);
    }

    const std::vector<std::vector<std::filesystem::path>>& selections() const {
        return selections_;
    }

  private:
    std::vector<std::vector<std::filesystem::path>> selections_;
};

}  // namespace platform::sim

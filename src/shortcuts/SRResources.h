#pragma once

#include <filesystem>

namespace lirixkro {

// The folder of the library's resources: the recorder's style descriptions
// and images, and the standard key bindings. An installed program finds it
// at share/tarnwick/lirixkro beside its bin folder; a program run from the
// build tree, in the build tree.
std::filesystem::path SRResourceDirectory();

// Points the library at another resource folder for as long as it lives.
class ScopedResourceDirectory {
  public:
    explicit ScopedResourceDirectory(std::filesystem::path directory);
    ~ScopedResourceDirectory();
    ScopedResourceDirectory(const ScopedResourceDirectory&) = delete;
    ScopedResourceDirectory& operator=(const ScopedResourceDirectory&) = delete;

  private:
    std::filesystem::path previous_;
};

}  // namespace lirixkro

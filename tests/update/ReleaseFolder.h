#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace testsupport {

// A temporary folder, removed with its contents when this goes.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// A release folder laid out as the release archive unpacks it, whose
// program is a script that prints "Tarnwick <version>" for --version.
void makeReleaseFolder(const std::filesystem::path& root, const std::string& version);

// The bytes of a gzip-compressed release archive of that version.
std::string releaseArchive(const std::string& version);

// What the folder holds, every path below it relative to it, with link
// targets: a picture of the tree to compare before and after.
std::vector<std::string> treeOf(const std::filesystem::path& folder);

// The standard output of a command run by the shell.
std::string outputOf(const std::string& command);

// An ed25519 key pair made for the test, in base64 as build settings and
// feeds carry keys and signatures.
struct TestKeyPair {
    TestKeyPair();
    std::string publicKey;
    std::string sign(const std::string& bytes) const;

  private:
    std::string secretKey_;
};

}  // namespace testsupport

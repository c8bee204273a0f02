#include "ReleaseFolder.h"

#include <sodium.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace testsupport {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    auto pattern = (fs::temp_directory_path() / "tarnwick-updater-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void makeReleaseFolder(const fs::path& root, const std::string& version) {
    const auto name = "tarnwick-" + version;
    fs::create_directories(root / name / "bin");
    const auto program = root / name / "bin" / "tarnwick";
    std::ofstream(program) << "#!/bin/sh\necho \"Tarnwick " << version << "\"\n";
    fs::permissions(program, fs::perms::owner_all | fs::perms::group_read | fs::perms::others_read);
    std::error_code ignored;
    fs::remove(root / "current", ignored);
    fs::create_symlink(name, root / "current");
}

std::string outputOf(const std::string& command) {
    std::string output;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        std::array<char, 4096> buffer;
        std::size_t n;
        while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
            output.append(buffer.data(), n);
        ::pclose(pipe);
    }
    return output;
}

std::string releaseArchive(const std::string& version) {
    const TemporaryFolder staging;
    makeReleaseFolder(staging.path() / "tarnwick", version);
    const auto archive = staging.path() / "release.tar.gz";
    outputOf("tar -czf '" + archive.string() + "' -C '" + staging.path().string() + "' tarnwick");
    std::ifstream in(archive, std::ios::binary);
    std::stringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

std::vector<std::string> treeOf(const fs::path& folder) {
    std::vector<std::string> tree;
    std::error_code error;
    for (auto it = fs::recursive_directory_iterator(folder, error);
         it != fs::recursive_directory_iterator(); it.increment(error)) {
        auto line = it->path().lexically_relative(folder).string();
        if (it->is_symlink())
            line += " -> " + fs::read_symlink(it->path()).string();
        tree.push_back(line);
    }
    std::sort(tree.begin(), tree.end());
    return tree;
}

namespace {

std::string base64(const unsigned char* bytes, std::size_t length) {
    std::string text(sodium_base64_ENCODED_LEN(length, sodium_base64_VARIANT_ORIGINAL), '\0');
    sodium_bin2base64(text.data(), text.size(), bytes, length, sodium_base64_VARIANT_ORIGINAL);
    text.resize(text.find('\0'));
    return text;
}

}  // namespace

TestKeyPair::TestKeyPair() {
    if (sodium_init() < 0)
        std::abort();
    unsigned char publicBytes[crypto_sign_PUBLICKEYBYTES];
    unsigned char secretBytes[crypto_sign_SECRETKEYBYTES];
    crypto_sign_keypair(publicBytes, secretBytes);
    publicKey = base64(publicBytes, sizeof publicBytes);
    secretKey_.assign(reinterpret_cast<const char*>(secretBytes), sizeof secretBytes);
}

std::string TestKeyPair::sign(const std::string& bytes) const {
    unsigned char signature[crypto_sign_BYTES];
    crypto_sign_detached(signature, nullptr, reinterpret_cast<const unsigned char*>(bytes.data()),
                         bytes.size(), reinterpret_cast<const unsigned char*>(secretKey_.data()));
    return base64(signature, sizeof signature);
}

}  // namespace testsupport

#pragma once

#include <string>

namespace bench {

// The value of "--name N" among a harness's arguments, else the fallback.
inline long option(int argc, char** argv, const std::string& name, long fallback) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == "--" + name)
            return std::stol(argv[i + 1]);
    }
    return fallback;
}

}  // namespace bench

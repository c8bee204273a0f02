#include <cstdio>
#include <cstring>

#include "main/BuildInfo.h"

int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("Tarnwick %s (%s)\n", tarnwick::build::version, tarnwick::build::number);
        return 0;
    }
    return 0;
}

#include "main/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace tarnwick {

void prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) == -1) {
            // open() takes the lowest free number, which is this one.
            ::open("/dev/null", descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY);
        }
    }
}

}  // namespace tarnwick

#pragma once

namespace tarnwick {

// Makes printing safe whatever the program was started with: a reader of
// standard output that went away makes a write fail instead of ending the
// program (SIGPIPE is ignored), and a standard descriptor that was closed
// is opened on /dev/null, so that no file the program opens later takes its
// number and receives the printed lines.
void prepareStandardStreams();

}  // namespace tarnwick

// The kernel process: a front end starts it and drives it over two pipes (session/link/pipe_client.h).

#include <cstdio>
#include <cstring>

#include "library_directory.h"
#include "session/link/app.h"

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
    std::printf("korelkernel %s\n", KOREL_VERSION);
    return 0;
  }
  if (argc > 1 && std::strcmp(argv[1], "--help") == 0) {
    std::printf(
        "Usage: korelkernel\n"
        "The kernel as a front end starts it: the environment variable PIPES_TRANSFER_VAR holds the descriptors to "
        "read\n"
        "from and to write to, and a file for the text of a failed start. For a session of your own start korelTTY.\n");
    return 0;
  }
  korel::App app(argc, argv, korel::programLibrary());
  korel::exportProgramTree();
  return app.runProcess();
}

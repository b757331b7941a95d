#include <cstdio>
#include <cstring>

#include "client/korel_client.h"
#include "remote_kernel.h"
#include "render.h"
#include "session/getopt.h"
#include "session/options.h"
#include "store/constants.h"

namespace korel {

namespace {

// What is run once, written to one file, or limits a process, is the kernel's alone.
constexpr const char* kernelOnlySwitches = "cLiT";

KorelProcess* process = nullptr;
bool endedHere = false;  // the input has ended while no kernel was running

/// Commands that the kernel runs write to the same output: what came before them is out by then.
DAG answer(void*, DAG message) {
  DAG reply = answerMessage(nullptr, message);
  std::fflush(stdout);
  return reply;
}

/// An empty statement makes a fresh kernel read its start files.
bool startFresh() { return process->start() && process->evaluate(null, 1); }

}  // namespace

void divideArguments(int argc, char** argv, Args& own, Args& kernel) {
  own += argv[0];
  kernel += argv[0];
  moptrewind();
  int letter;
  while ((letter = mgetopt(argc, argv, optionLetters, "korelTTY", " [file]")) != -1) {
    const char text[] = {'-', static_cast<char>(letter), '\0'};
    const bool isOwn = std::strchr(kernelOnlySwitches, letter) == nullptr;
    for (Args* list : {&kernel, &own}) {
      if (list == &own && !isOwn) continue;
      *list += text;
      if (moptarg != nullptr) *list += moptarg;
    }
  }
  own += "--";
  for (int i = moptind; i < argc; ++i) own += argv[i];
}

const char* openRemoteKernel(const Args& args, int (*interrupted)(void*)) {
  ServerSpec spec(serverGiven);
  spec.args = args;
  process = new KorelProcess(spec);
  process->setHandlers(answer, interrupted, nullptr);
  return startFresh() ? nullptr : process->getErrorText();
}

void evaluateRemotely(DAG statement, int showResults) {
  if (process->getServerStatus() == serverDead) {
    endedHere = isTag(statement, STOP);
    if (endedHere) return;
  }
  if (process->getServerStatus() == serverDead && !startFresh())
    std::printf("Error, the kernel process cannot be started: %s\n", process->getErrorText());
  else if (!process->evaluate(statement, showResults))
    std::printf("Error, the kernel process has died: %s; the next statement starts a fresh one\n",
                process->getErrorText());
  std::fflush(stdout);
}

bool remoteKernelStopped(int& exitCode) { return endedHere || process->isStopped(exitCode); }

void closeRemoteKernel() {
  delete process;
  process = nullptr;
}

}  // namespace korel

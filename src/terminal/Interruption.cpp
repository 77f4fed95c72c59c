#include "Interruption.h"

#include "Command.h"

#include <csignal>

#include <unistd.h>

namespace brisko {
namespace {

volatile std::sig_atomic_t signals = 0;

void count(int) {
  if (signals != 0) ::_exit(kInterrupted);
  signals = 1;
}

}  // namespace

void Interruption::watch() {
  struct sigaction action = {};
  action.sa_handler = count;
  sigemptyset(&action.sa_mask);
  // Without SA_RESTART: a question that waits for its answer ends too.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    sigaction(signal, &action, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

bool Interruption::happened() {
  return signals != 0;
}

}  // namespace brisko

#include "EraserRun.h"

#include "SystemLog.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace brisko::srm {
namespace {

volatile std::sig_atomic_t stopped = 0;

void stop(int) {
  stopped = 1;
}

}  // namespace

void EraserRun::watchSignals() {
  struct sigaction action = {};
  action.sa_handler = stop;
  sigemptyset(&action.sa_mask);
  // Without SA_RESTART, so that a slow write or flush notices.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    sigaction(signal, &action, nullptr);
  // Who reads along may go away, and who opens a file while it is looked whether anybody has it
  // open sends a notice; the work depends on neither.
  action.sa_handler = SIG_IGN;
  for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO})
    sigaction(signal, &action, nullptr);
}

bool EraserRun::isStopped() {
  return stopped != 0;
}

void EraserRun::tell(const std::string& path, const std::string& what) const {
  if (!options_.verbose) return;
  std::printf("%s: %s\n", escapedForDisplay(path).c_str(), what.c_str());
  std::fflush(stdout);
}

void EraserRun::fail(const std::string& path, const std::string& reason) {
  ++failed_;
  std::fprintf(stderr, "srm: %s: %s\n", escapedForDisplay(path).c_str(), reason.c_str());
}

std::string wordsFor(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return "you are not permitted to erase it";
    case EROFS:
      return "the disk is read-only";
    case ETXTBSY:
      return "it is in use: a program that runs, or swap space";
    case EBUSY:
      return "it is in use by the system";
    case EXDEV:
      return "another file system is mounted there";
    case ENOSPC:
    case EDQUOT:
      return "the disk is full, and there is no room to overwrite it";
    case ENOTEMPTY:
    case EEXIST:
      return "something in it stays, or was put into it meanwhile";
    case ENOENT:
      return "it is not there";
    case ELOOP:
    case ENOTDIR:
      return "it was exchanged while it was being erased";
    case EIO:
      return "the disk reports an error";
    case ENODATA:
      return "the system gives no random numbers";
    default:
      return std::strerror(error);
  }
}

}  // namespace brisko::srm

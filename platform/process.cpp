#include "platform/process.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <limits>

namespace quillary {

bool ProcessIsAlive(long pid) {
  // 0 and negative numbers would ask after whole groups of processes.
  if (pid <= 0 || pid > std::numeric_limits<pid_t>::max()) return false;
  return kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

long ProcessNumber() {
  return getpid();
}

}  // namespace quillary

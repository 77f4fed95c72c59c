#include "LoopDisk.h"

#include "FileDescriptor.h"
#include "HostTools.h"
#include "Machine.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fstream>

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace brisko::test {
namespace {

FileDescriptor control() {
  return FileDescriptor(open("/dev/loop-control", O_RDWR | O_CLOEXEC));
}

}  // namespace

bool runs(const std::string& command) {
  return HostTools::shell(command + " >/dev/null 2>&1") == 0;
}

std::string LoopDisk::missing() {
  if (!isRoot()) return "loop devices are the administrator's";
  if (!control()) return "the machine has no loop devices";
  return {};
}

LoopDisk::LoopDisk(const std::string& image, std::uint64_t megabytes, bool readOnly)
    : image_(image) {
  const FileDescriptor file(open(image.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (!file || ftruncate(file.get(), static_cast<off_t>(megabytes << 20)) != 0) return;
  const FileDescriptor devices = control();
  // Another test may take the free one between the question and the answer.
  for (int attempt = 0; attempt < 50; ++attempt) {
    const int number = ioctl(devices.get(), LOOP_CTL_GET_FREE);
    if (number < 0) return;
    const FileDescriptor device(
        open(("/dev/loop" + std::to_string(number)).c_str(), O_RDWR | O_CLOEXEC));
    loop_config configuration{};
    configuration.fd = static_cast<unsigned>(file.get());
    configuration.info.lo_flags = LO_FLAGS_PARTSCAN | (readOnly ? LO_FLAGS_READ_ONLY : 0);
    if (device && ioctl(device.get(), LOOP_CONFIGURE, &configuration) == 0) {
      number_ = number;
      return;
    }
    if (errno != EBUSY) return;
  }
}

LoopDisk::~LoopDisk() {
  if (!isAttached()) return;
  runs("partx -d " + node());
  const FileDescriptor device(open(node().c_str(), O_RDWR | O_CLOEXEC));
  ioctl(device.get(), LOOP_CLR_FD);
}

bool LoopDisk::partition(const std::string& table) const {
  if (!runs("printf '" + table + "' | sfdisk -q " + node())) return false;
  return access(node(1).c_str(), F_OK) == 0 ||
         (runs("partx -a " + node()) && access(node(1).c_str(), F_OK) == 0);
}

bool LoopDisk::isAttached() const {
  if (number_ < 0) return false;
  std::ifstream stream("/sys/block/loop" + std::to_string(number_) + "/loop/backing_file");
  std::string file;
  // The number may long be another one's.
  return std::getline(stream, file) && file == image_;
}

std::string LoopDisk::identifier(int partition) const {
  const std::string disk = "loop" + std::to_string(number_);
  return partition == 0 ? disk : disk + "p" + std::to_string(partition);
}

std::string LoopDisk::node(int partition) const {
  return "/dev/" + identifier(partition);
}

}  // namespace brisko::test

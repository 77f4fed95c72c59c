#include "RemovalService.h"

#include "AptTool.h"
#include "PathResolution.h"
#include "Removal.h"
#include "RemovalWalk.h"
#include "RmRunner.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brisko::helper {
namespace {

Message denied(std::string why) {
  Message reply;
  reply.type = Type::denied;
  reply.output = std::move(why);
  return reply;
}

bool isNormal(const std::string& path) {
  std::vector<std::string> names;
  return splitPath(path, names) && !names.empty() && joinPath(names, names.size()) == path;
}

bool isItem(const struct statx& facts, const FileIdentity& shown) {
  return makedev(facts.stx_dev_major, facts.stx_dev_minor) == shown.device &&
         facts.stx_ino == shown.inode && fileKind(facts.stx_mode) == shown.kind;
}

// What removing would free, by a walk that removes nothing. Files with several names count for
// nothing, though all of them may be inside: too little is claimed rather than too much.
std::uint64_t bytesOf(const ParentFolder& parent) {
  RemovalCalls looking = RemovalCalls::system();
  looking.unlinkat = [](int, const char*, int) { return 0; };
  looking.chmod = [](int, mode_t) {
    errno = EPERM;
    return -1;
  };
  struct statx facts;
  const int folder = parent.folder.get();
  if (factsOf(looking, folder, parent.name.c_str(), facts) != 0) return 0;
  RemovalWalk walk(looking, nullptr);
  if (!S_ISDIR(facts.stx_mode)) return walk.removeItem(folder, parent.name, facts).freedBytes;
  FileDescriptor opened = walk.openFolder(folder, parent.name, facts);
  if (!opened) return 0;
  return walk.removeFolder(folder, parent.name, std::move(opened), facts).freedBytes;
}

bool isThere(const ParentFolder& parent) {
  struct statx facts;
  return factsOf(RemovalCalls::system(), parent.folder.get(), parent.name.c_str(), facts) == 0 ||
         errno != ENOENT;
}

}  // namespace

int RemovalService::run() {
  if (::getrandom(token_.data(), token_.size(), 0) != static_cast<ssize_t>(token_.size())) return 1;
  Message hello;
  hello.type = Type::hello;
  hello.token = token_;
  if (!send(client_, hello)) return 1;
  while (const auto request = receive(client_)) {
    // Whoever has not got the token is not the program that this was started for.
    const bool isRequest = request->type == Type::ping || request->type == Type::remove ||
                           request->type == Type::removePackages;
    if (!isRequest || !isSame(request->token, token_)) return 1;
    const Message reply = answer(*request);
    if (clientLeft_ || !send(client_, reply)) return 1;
  }
  return 0;
}

Message RemovalService::answer(const Message& request) {
  if (request.type == Type::remove) return remove(request);
  if (request.type == Type::removePackages) return removePackages(request);
  Message reply;
  reply.type = Type::done;
  return reply;
}

Message RemovalService::remove(const Message& request) {
  if (!isNormal(request.path)) return denied("The path is not in its normal form.");
  const ParentFolder parent = openParent(RemovalCalls::system(), request.path, false);
  if (auto why = objection(request, parent)) return denied(*std::move(why));
  return runTool(request, parent);
}

// The package manager is never stopped half-way, also when the program is gone meanwhile.
Message RemovalService::removePackages(const Message& request) {
  // What packages write while they go is for everybody to read, unlike what this program would.
  const mode_t before = ::umask(022);
  std::string why = AptTool::remove(request.packages, [this](double part) {
    Message step;
    step.type = Type::progress;
    step.permille = static_cast<std::uint16_t>(part * 1000);
    if (!clientLeft_) clientLeft_ = !send(client_, step);
  });
  ::umask(before);
  if (!why.empty()) return denied(std::move(why));
  Message reply;
  reply.type = Type::done;
  return reply;
}

std::optional<std::string> RemovalService::objection(const Message& request,
                                                     const ParentFolder& parent) {
  const ProtectedPaths rules = ProtectedPaths::forUser(uid_);
  if (auto why = rules.reasonFor(request.path)) return why;
  if (parent.error != 0) return parent.reason;
  if (auto refusal = RemovalEngine(RemovalCalls::system(), &rules).refusal(parent)) {
    return refusal->reason;
  }
  struct statx facts;
  if (factsOf(RemovalCalls::system(), parent.folder.get(), parent.name.c_str(), facts) != 0) {
    if (errno == ENOENT && !request.shown) return std::nullopt;
    return "It is not there.";
  }
  if (request.shown && !isItem(facts, *request.shown)) {
    return "It is not the item that was shown any more.";
  }
  return std::nullopt;
}

// In a folder of a user's own rm runs as that user first: whatever is exchanged there meanwhile, it
// can do no more than the user could.
Message RemovalService::runTool(const Message& request, const ParentFolder& parent) {
  Message reply;
  reply.type = Type::done;
  const std::uint64_t before = bytesOf(parent);
  struct statx folder;
  if (factsOf(RemovalCalls::system(), parent.folder.get(), "", folder) != 0) {
    return denied("The folder that it is in cannot be looked at.");
  }
  if (folder.stx_uid != 0) {
    const RmResult asOwner = runRm(parent.folder.get(), parent.name, folder.stx_uid, client_);
    clientLeft_ = asOwner.clientLeft;
    if (clientLeft_) return reply;
    if (auto why = isThere(parent) ? objection(request, parent) : std::nullopt) {
      return denied(*std::move(why));
    }
  }
  if (folder.stx_uid == 0 || isThere(parent)) {
    const RmResult asRoot = runRm(parent.folder.get(), parent.name, 0, client_);
    clientLeft_ = asRoot.clientLeft;
    if (!asRoot.started) return denied("/bin/rm could not be started.");
    reply.output = asRoot.output;
  }
  const bool stays = isThere(parent);
  if (stays && reply.output.empty()) reply.output = "It is still there.";
  const std::uint64_t after = stays ? bytesOf(parent) : 0;
  reply.freedBytes = before > after ? before - after : 0;
  return reply;
}

}  // namespace brisko::helper

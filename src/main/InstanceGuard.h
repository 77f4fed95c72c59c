#pragma once

#include "FileDescriptor.h"

#include <QLocalServer>
#include <QObject>

#include <string>

namespace brisko {

/// One window per user and root: the first program listens on a socket of the user's, a second one
/// asks it to come to the front and ends.
class InstanceGuard : public QObject {
  Q_OBJECT

 public:
  enum class Role {
    first,   ///< nobody else runs; this one listens now
    second,  ///< another one runs and was told
    failed,  ///< another one holds the place but does not answer
  };

  /// `root` is the folder that stands for "/": programs with different roots do not meet.
  explicit InstanceGuard(const std::string& root);

  /// Tries to become the first. Waits at most two seconds for the answer of another one.
  Role claim();

  const std::string& socketPath() const { return socketPath_; }

 Q_SIGNALS:
  /// Another program was started and this one is to come to the front.
  void raiseRequested();

 private:
  Role askFirst() const;
  void answer();

  std::string socketPath_;
  FileDescriptor lock_;
  QLocalServer server_;
};

}  // namespace brisko

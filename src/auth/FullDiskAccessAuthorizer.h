#pragma once

namespace brisko {

/// Whether this program may read the folders that the system protects unless the user has granted
/// full disk access. Safari's folder serves as the probe.
class FullDiskAccessAuthorizer {
 public:
  enum class Status : int {
    notDetermined = 0,  ///< the probe folder does not exist
    denied = 1,         ///< it exists but cannot be listed
    authorized = 2,     ///< it can be listed
  };

  /// Made on first use, under a lock. Any thread.
  static FullDiskAccessAuthorizer& sharedInstance();

  /// Looks now. In a sandbox the home is the user database's for the real user id; a user without
  /// an entry there is not determined. Logs "isSandboxed : %d", "userHomePath : %@, path : %@" and
  /// "paths : %@" with the listing.
  Status authorizationStatus();

  /// The same status; anything but 1 and 2 is 0.
  Status getAuthorization();

  /// Opens the list of programs with full disk access in the system's settings; from version 10.14
  /// on, before that it does nothing.
  void requestAuthorization();

 private:
  FullDiskAccessAuthorizer() = default;
};

}  // namespace brisko

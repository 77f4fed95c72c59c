#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace brisko {

/// Threads for work that may or may not have to wait for a disk.
///
/// What is in the page cache is read fastest by one thread per processor; what is not, by many
/// requests in flight, which the disk can put in order. Which of the two it is cannot be asked
/// beforehand, so it is observed: each thread counts how often the kernel had to put it to sleep,
/// and while that happens on every other unit of work the crew doubles, up to its maximum.
class ReaderCrew {
 public:
  static constexpr unsigned kMaximum = 32;

  /// Whether the threads use file descriptors of each other and of the process.
  ///
  /// Threads with a table of descriptors in common take a lock on it for each opening and closing,
  /// which with small files costs a tenth of the time. With tables of their own they share only the
  /// standard streams with the rest of the process, so what `body` calls must not use any other
  /// descriptor that it did not open: no writing to the system log. Where the system has no such
  /// tables they stay in common.
  enum class Descriptors { shared, own };

  /// One thread's view of the crew.
  class Member {
   public:
    /// Says that one unit of work (a file, a batch of look-ups) is done.
    void unitDone();
    /// Says that sleeping until now was not the disk's doing (a wait for work).
    void restart();

   private:
    friend class ReaderCrew;
    explicit Member(ReaderCrew& crew);
    static long sleeps();

    ReaderCrew& crew_;
    long sleepsAtStart_ = 0;
    unsigned units_ = 0;
  };

  /// Runs `body` on the caller and on further threads, and returns when all have returned. `body`
  /// returns when there is nothing left to do; a thread that joins late may find that at once.
  /// `useful` is how many threads could have something to do now.
  void run(std::size_t useful, unsigned maximum, const std::function<void(Member&)>& body,
           Descriptors descriptors = Descriptors::shared);

  /// How many threads the last run came to.
  unsigned size() const { return size_; }

 private:
  void grow();
  void start(unsigned count);
  void takePart();

  const std::function<void(Member&)>* body_ = nullptr;
  unsigned maximum_ = 1;
  Descriptors descriptors_ = Descriptors::shared;
  std::atomic<unsigned> size_ = 0;
  bool isEnding_ = false;
  std::mutex mutex_;
  std::vector<std::thread> threads_;
};

}  // namespace brisko

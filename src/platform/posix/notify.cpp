// Change notification on inotify, the wait on a change handle, and Sleep.
//
// A change handle owns an inotify descriptor that watches one directory
// for writes and for changed times of its files. The handle is signalled
// from the moment an event is queued until FindNextChangeNotification: the
// wait that sees the events takes them off the queue and marks the handle,
// so whatever comes after that stays queued and signals the next wait at
// once.
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <new>

#include "platform/posix/native.h"

namespace kz::os {
namespace {

struct ChangeWatch {
  std::uint32_t tag;  // kWatchTag while the handle lives
  int queue;          // the inotify descriptor
  int watch;          // its watch on the directory
  bool signalled;
};

constexpr std::uint32_t kWatchTag = 0x4B5A4348;  // "KZCH"

ChangeWatch* watch_of(HANDLE handle) {
  if (handle == nullptr || handle == kInvalidHandle) return nullptr;
  // File handles are small biased descriptors; a watch is a heap block.
  if (reinterpret_cast<std::uintptr_t>(handle) < 0x10000) return nullptr;
  auto* watch = static_cast<ChangeWatch*>(handle);
  return watch->tag == kWatchTag ? watch : nullptr;
}

// Takes every queued event off the queue without blocking.
void drain(int queue) {
  alignas(inotify_event) char events[4096];
  while (read(queue, events, sizeof events) > 0) {
  }
}

// Closing an inotify descriptor waits for the kernel to retire its marks,
// which takes milliseconds, and every wait ends by closing its handle. So a
// closed handle's descriptor, its watch removed and its queue emptied, is
// kept here for the next handle of this process (a forked child's copies
// are not its own: it closes them and makes new ones).
class QueuePool {
 public:
  int take() {
    for (Slot& slot : slots_) {
      const std::uint64_t held = slot.exchange(kEmpty);
      if (held == kEmpty) continue;
      const int queue = static_cast<int>(held & 0xFFFFFFFF);
      if (static_cast<pid_t>(held >> 32) == getpid()) {
        drain(queue);
        return queue;
      }
      close(queue);
    }
    return inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  }
  void give_back(int queue) {
    drain(queue);
    const std::uint64_t held = std::uint64_t(getpid()) << 32 | static_cast<std::uint32_t>(queue);
    for (Slot& slot : slots_) {
      std::uint64_t empty = kEmpty;
      if (slot.compare_exchange_strong(empty, held)) return;
    }
    close(queue);
  }

 private:
  using Slot = std::atomic<std::uint64_t>;
  static constexpr std::uint64_t kEmpty = ~std::uint64_t{0};
  Slot slots_[4] = {kEmpty, kEmpty, kEmpty, kEmpty};
};

QueuePool queues;

std::int64_t now_ms() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

}  // namespace

HANDLE FindFirstChangeNotificationA(const char* directory, BOOL subtree, DWORD filter) {
  char native[posix::kNativePathMax];
  if (directory == nullptr || directory[0] == 0 || !posix::native_path(directory, native))
    return kInvalidHandle;
  // Only what the library asks for is offered: one directory, last writes.
  if (subtree || (filter & kFileNotifyChangeLastWrite) == 0) return kInvalidHandle;
  struct stat st;
  if (stat(native, &st) != 0 || !S_ISDIR(st.st_mode)) return kInvalidHandle;
  const int queue = queues.take();
  if (queue < 0) return kInvalidHandle;
  // A write or a cut changes the last write time (IN_MODIFY), and so can a
  // change of times (IN_ATTRIB); the directory's own removal ends the watch.
  const int watched = inotify_add_watch(queue, native, IN_MODIFY | IN_ATTRIB | IN_ONLYDIR);
  if (watched < 0) {
    queues.give_back(queue);
    return kInvalidHandle;
  }
  auto* watch = new (std::nothrow) ChangeWatch{kWatchTag, queue, watched, false};
  if (watch == nullptr) {
    inotify_rm_watch(queue, watched);
    queues.give_back(queue);
    return kInvalidHandle;
  }
  return watch;
}

BOOL FindNextChangeNotification(HANDLE change) {
  ChangeWatch* watch = watch_of(change);
  if (watch == nullptr) return 0;
  watch->signalled = false;
  return 1;
}

BOOL FindCloseChangeNotification(HANDLE change) {
  ChangeWatch* watch = watch_of(change);
  if (watch == nullptr) return 0;
  inotify_rm_watch(watch->queue, watch->watch);
  queues.give_back(watch->queue);
  watch->tag = 0;
  delete watch;
  return 1;
}

DWORD WaitForSingleObject(HANDLE object, DWORD timeout) {
  ChangeWatch* watch = watch_of(object);
  if (watch == nullptr) return kWaitFailed;
  if (watch->signalled) return kWaitObject0;
  const std::int64_t deadline = timeout == kInfinite ? 0 : now_ms() + timeout;
  for (;;) {
    int slice = -1;
    if (timeout != kInfinite) {
      const std::int64_t left = deadline - now_ms();
      slice = left <= 0 ? 0 : left > 0x7FFFFFFF ? 0x7FFFFFFF : static_cast<int>(left);
    }
    pollfd ready = {watch->queue, POLLIN, 0};
    const int n = poll(&ready, 1, slice);
    if (n < 0 && errno != EINTR) return kWaitFailed;
    if (n > 0) {
      if ((ready.revents & POLLIN) == 0) return kWaitFailed;
      drain(watch->queue);
      watch->signalled = true;
      return kWaitObject0;
    }
    // poll rounds its timeout to whole milliseconds: wait until the
    // deadline has truly passed.
    if (n == 0 && timeout != kInfinite && deadline - now_ms() <= 0) return kWaitTimeout;
  }
}

void Sleep(DWORD milliseconds) {
  timespec pause = {static_cast<time_t>(milliseconds / 1000),
                    static_cast<long>(milliseconds % 1000) * 1000000};
  while (nanosleep(&pause, &pause) != 0 && errno == EINTR) {
  }
}

}  // namespace kz::os

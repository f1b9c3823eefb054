// Buffers that end where a protected page begins, so that a call which
// writes or reads one element past the end stops the test at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace kz::test {

// Pages that hold at least `bytes` bytes and one protected page behind
// them; `guard` is where the protected page begins. The platform's half
// lives in guard_posix.cpp and guard_win32.cpp. A page here is 64 KiB, a
// multiple of the system's page on every platform we build for.
constexpr std::size_t kPage = 65536;
struct GuardedPages {
  void* base;
  std::size_t size;
  char* guard;
};
GuardedPages map_guarded(std::size_t bytes);
void unmap_guarded(const GuardedPages& pages);

// count elements right in front of the protected page, each the sentinel
// 0x7B (or 0x7B7B); or a text whose terminator is the last element.
template <class T>
class Guarded {
 public:
  explicit Guarded(std::size_t count)
      : pages_(map_guarded(count * sizeof(T))),
        data_(reinterpret_cast<T*>(pages_.guard) - count),
        count_(count) {
    std::fill_n(reinterpret_cast<char*>(data_), count * sizeof(T), '\x7B');
  }
  explicit Guarded(const std::basic_string<T>& text) : Guarded(text.size() + 1) {
    std::copy(text.c_str(), text.c_str() + text.size() + 1, data_);
  }
  ~Guarded() { unmap_guarded(pages_); }
  Guarded(const Guarded&) = delete;

  T* get() const { return data_; }
  // The text up to the terminator, or 14 question marks when the buffer
  // holds none.
  std::basic_string<T> text() const {
    const T *begin = data_, *end = std::find(begin, begin + count_, T{0});
    return end == begin + count_ ? std::basic_string<T>(14, T('?'))
                                 : std::basic_string<T>(begin, end);
  }

 private:
  GuardedPages pages_;
  T* data_;
  std::size_t count_;
};

}  // namespace kz::test

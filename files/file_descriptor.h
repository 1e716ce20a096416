// An open file of the system, closed when it goes out of scope.
#pragma once

#include <cerrno>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "marovia/error.h"

namespace marovia {

class FileDescriptor {
 public:
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() {
    if (IsOpen()) ::close(number_);
  }

  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  [[nodiscard]] int Number() const { return number_; }

  // Some file systems report a full disk only here. True where all went well.
  [[nodiscard]] bool Close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

// Error kIo with the system's reason for the call that just failed.
[[noreturn]] inline void FailWithErrno(const std::string& what) {
  Fail(Errc::kIo, what + ": " + std::generic_category().message(errno));
}

}  // namespace marovia

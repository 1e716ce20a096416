// A file on its way to being put in place.
#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

#include "marovia/image.h"

#include "files/file_descriptor.h"

namespace marovia {

// A new file beside the one that it will become. Where the file system can, it has no name while it
// is written, so that nothing is left of it even if the program is killed; elsewhere, and for the
// moment in which it replaces a file, it has one of its own, which goes with the object.
class TemporaryFile {
 public:
  TemporaryFile(std::filesystem::path folder, mode_t mode);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  // Gives the file, new and empty, the owner, group, permissions, access control list and extended
  // attributes of the file `from` beside it. Nobody but root may give a file away: without its
  // owner it keeps the group, without its group that of the caller gets no more than everyone has.
  // Error kIo where the rest cannot be kept.
  void TakeOverAccess(const std::string& from) const;

  // Writes and syncs it. Error kIo where not every byte got there.
  void Fill(ByteView bytes) const;

  // Gives the file its name, in place of the file that has it where `force` allows that.
  void Become(const std::string& path, bool force);

 private:
  [[nodiscard]] std::string OpenFile() const;
  [[nodiscard]] bool LinkTo(const char* name) const;
  template <class Take>
  void TakeName(Take take);
  void RenameTo(const std::string& path, bool force) const;

  std::filesystem::path folder_;
  FileDescriptor file_;
  std::string name_;  // empty while it has none
};

// Writes all the bytes; error kIo.
void WriteAll(const FileDescriptor& file, ByteView bytes);
// Error kIo: some file systems report a full disk only where a file is closed.
void CloseChecked(FileDescriptor& file);
[[noreturn]] void FailOnExistingFile();

}  // namespace marovia

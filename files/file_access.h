// Who may do what with a file, carried over to the one that replaces it.
#pragma once

#include <string>

#include "files/file_descriptor.h"

namespace marovia {

// Gives the open file `to`, new and empty, the owner, group, permissions, access control list and
// extended attributes of the file `from` beside it. Nobody but root may give a file away: without
// its owner it keeps the group, without its group that of the caller gets no more than everyone
// has. Error kIo where the rest cannot be kept.
void TakeOverAccess(const std::string& from, const FileDescriptor& to);

}  // namespace marovia

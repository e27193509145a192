// Copying a file of the system.
#pragma once

#include <string>

namespace kvarta16::posix {

// Copies over what stands at the target, as PosixFiles::FileCopy tells it.
void copy_over(const std::string& source, const std::string& target);

// Copies to a name that must not exist. Fails: 58 where it does, the others of copy_over().
void copy_to_new(const std::string& source, const std::string& target);

// Gives a name to a file or folder and never takes that of another. The system's error, 0 where
// there is none; EEXIST where the new name exists.
[[nodiscard]] int rename_to_new(const std::string& old_name, const std::string& new_name);

}  // namespace kvarta16::posix

// Reading a whole input (a file, a pipe, a device) into memory, once, within a size limit.
#pragma once

#include <cstddef>
#include <istream>
#include <string>

namespace plotmeter {

// Reads everything that `fd` holds into `text`. A regular file larger than `limit` is
// refused before it is read; any other input (a pipe, a terminal, a device that never
// ends) is read only up to `limit` and then refused, holding little more than `limit`
// bytes. Returns 0, or the system's error number: EFBIG for an input larger than `limit`,
// EISDIR for a folder, ENOMEM when memory runs out. `text` is empty after a failure.
int ReadAllInput(int fd, std::string& text, std::size_t limit);

// The same for a stream: one that can tell its size (a file) and is larger than `limit` is
// refused before it is read. EIO when the stream fails.
int ReadAllInput(std::istream& in, std::string& text, std::size_t limit);

}  // namespace plotmeter

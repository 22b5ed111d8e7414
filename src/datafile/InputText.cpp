#include "datafile/InputText.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <vector>

namespace plotmeter {

namespace {

// An input of unknown size arrives in blocks of this size, kept apart until it ends: a
// text grown in one piece would need twice its size whenever it moved.
constexpr std::size_t kBlockSize = std::size_t{1} << 20;

// Reads the blocks of an input through `readSome(buffer, size)`, which returns the bytes
// read, 0 at the end, or -1 with the error number in `errno`. `knownSize` (0 when unknown)
// makes the first block hold the whole of a file, so that it is read straight into its
// text; one byte more shows at once whether it has grown.
template <typename ReadSome>
int ReadBlocks(ReadSome readSome, std::size_t knownSize, std::string& text, std::size_t limit) {
  text.clear();
  try {
    std::vector<std::string> blocks;
    std::size_t total = 0;
    for (bool ended = false; !ended;) {
      std::string block(blocks.empty() && knownSize > 0 ? knownSize + 1 : kBlockSize, '\0');
      std::size_t filled = 0;
      while (filled < block.size()) {
        const long got = readSome(block.data() + filled, block.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errno;
        if (got == 0) {
          ended = true;
          break;
        }
        filled += static_cast<std::size_t>(got);
        if (total + filled > limit) return EFBIG;
      }
      total += filled;
      block.resize(filled);
      if (filled > 0) blocks.push_back(std::move(block));
    }
    if (blocks.size() == 1) {
      text = std::move(blocks.front());
      return 0;
    }
    text.reserve(total);
    for (std::string& block : blocks) {
      text += block;
      block = std::string();
    }
    return 0;
  } catch (const std::bad_alloc&) {
    text = std::string();
    return ENOMEM;
  }
}

// The size of a seekable stream, so that a file too large is refused unread; 0 when
// unknown.
std::size_t StreamSize(std::istream& in) {
  const auto start = in.tellg();
  if (start < 0 || !in.seekg(0, std::ios::end)) {
    in.clear();
    return 0;
  }
  const auto end = in.tellg();
  in.seekg(start);
  return end > start ? static_cast<std::size_t>(end - start) : 0;
}

}  // namespace

int ReadAllInput(int fd, std::string& text, std::size_t limit) {
  text.clear();
  struct stat info;
  if (::fstat(fd, &info) != 0) return errno;
  if (S_ISDIR(info.st_mode)) return EISDIR;
  std::size_t size = 0;
  if (S_ISREG(info.st_mode)) {
    size = static_cast<std::size_t>(info.st_size);
    if (size > limit) return EFBIG;
  }
  return ReadBlocks([fd](char* buffer, std::size_t room) { return ::read(fd, buffer, room); }, size,
                    text, limit);
}

int ReadAllInput(std::istream& in, std::string& text, std::size_t limit) {
  text.clear();
  if (!in) return EIO;
  const std::size_t size = StreamSize(in);
  if (size > limit) return EFBIG;
  return ReadBlocks(
      [&in](char* buffer, std::size_t room) -> long {
        in.read(buffer, static_cast<std::streamsize>(room));
        if (in.bad()) {
          errno = EIO;
          return -1;
        }
        return static_cast<long>(in.gcount());
      },
      size, text, limit);
}

}  // namespace plotmeter

// Standard output and standard error speak UTF-8, while the program's own text is
// single-byte (Latin-1): the conversion happens here, on the way out only.
#pragma once

#include <array>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace plotmeter {

// Each byte of 128 or more becomes its two-byte UTF-8 form; "27\xB0" gives "27°".
std::string Utf8FromLatin1(std::string_view text);

// Control characters in caret notation, as `cat -v` shows them: ESC as "^[", BEL as "^G",
// NUL as "^@", DEL as "^?", and those of 128 to 159 with "M-" before ("M-^["), so that
// text from a file cannot drive the terminal. Tabs stay.
std::string ShowControls(std::string_view text);

// Writes `text` converted, then a line break.
void WriteLine(std::ostream& out, std::string_view text);

// Output written straight to a file descriptor (standard output), keeping the system's
// reason for the first write that failed ("No space left on device"). Once a write has
// failed, nothing more is written.
class OutputFile : public std::streambuf {
 public:
  explicit OutputFile(int fd) : fd_(fd) { Empty(); }
  ~OutputFile() override { Drain(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // The system's error number of the write that failed; 0 while none has.
  int error() const { return error_; }

 protected:
  int_type overflow(int_type c) override;
  int sync() override { return Drain() ? 0 : -1; }

 private:
  void Empty() { setp(buffer_.data(), buffer_.data() + buffer_.size()); }
  bool Drain();

  int fd_;
  int error_ = 0;
  std::array<char, 1 << 16> buffer_;
};

}  // namespace plotmeter

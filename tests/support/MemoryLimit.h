// Running out of memory on purpose, in a child process of a death test: the address space
// is limited to what the process holds and a little more. AddressSanitizer reserves far
// more address space than that, so its builds cannot run such tests.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstddef>
#include <fstream>

#if defined(__SANITIZE_ADDRESS__)
#define PLOTMETER_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLOTMETER_ADDRESS_SANITIZER 1
#endif
#endif

namespace plotmeter::testing {

// Leaves the process `room` bytes of address space beyond what it holds now.
inline void LimitAddressSpace(std::size_t room) {
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  const rlim_t limit = static_cast<rlim_t>(pages) * ::sysconf(_SC_PAGESIZE) + room;
  const struct rlimit limits = {limit, limit};
  ::setrlimit(RLIMIT_AS, &limits);
}

}  // namespace plotmeter::testing

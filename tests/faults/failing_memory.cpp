// The allocations of the C library, of which one fails, or all from one on. Loaded before the C
// library, so that its own calls and those of `operator new` come here too.
//
// They are counted from the time when all libraries are set up and only the program is left to
// start: what the loader allocates is none of the program's.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "faults/memory_faults.h"

// The C library's own functions, by their second names.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

using quorix::testing::MemoryFaults;

MemoryFaults* faults = nullptr;

__attribute__((constructor)) void start_counting() {
  const char* const name = std::getenv(quorix::testing::kMemoryFaultsVariable);
  if (name == nullptr) return;
  const int descriptor = ::open(name, O_RDWR | O_CLOEXEC);
  if (descriptor < 0) return;
  void* const page =
      ::mmap(nullptr, sizeof(MemoryFaults), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
  ::close(descriptor);
  if (page != MAP_FAILED) faults = static_cast<MemoryFaults*>(page);
}

/// Counts an allocation. True if it is one that fails.
bool fails() {
  if (faults == nullptr) return false;
  const std::uint64_t number = ++faults->call_count;
  const bool is_hit = number == faults->first_failing ||
                      (faults->is_lasting != 0 && number > faults->first_failing);
  if (!is_hit) return false;
  ++faults->failed_count;
  errno = ENOMEM;
  return true;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  return fails() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
  return fails() ? nullptr : __libc_realloc(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
  return fails() ? nullptr : __libc_memalign(alignment, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  void* const allocated = memalign(alignment, size);
  if (allocated == nullptr) return ENOMEM;
  *block = allocated;
  return 0;
}
}

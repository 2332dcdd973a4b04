// Memory that runs out: whichever allocation of a search fails, the caller gets std::bad_alloc, the
// process goes on, and so does the next search.

#include <gtest/gtest.h>
#include <quorix/quorix.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace {

/// Allocations until one fails; negative: none does.
long allocations_left = -1;

bool is_time_to_fail() {
  if (allocations_left < 0) return false;
  return allocations_left-- == 0;
}

}  // namespace

// The linker puts these in the place of the C library's (-Wl,--wrap).
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the linker wants these names
void* __real_realloc(void* block, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size) {
  return is_time_to_fail() ? nullptr : __real_realloc(block, size);
}
// NOLINTEND(bugprone-reserved-identifier)
}

void* operator new(std::size_t size) {
  void* const block = is_time_to_fail() ? nullptr : std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}

namespace {

/// Returns a text with arrays of several unit lengths, whose copies differ here and there.
std::string text_of_diverged_arrays() {
  std::string text;
  for (const char* const unit : {"AC", "ACG", "AACT", "AACGTCCA"}) {
    text += "GTCAG";
    for (int i = 0; i < 12; ++i) text += unit;
    for (int i = 0; i < 12; ++i) text += std::string("T") + unit + unit + unit;
  }
  return text;
}

TEST(LibraryMemory, any_failed_allocation_is_an_exception) {
  const std::string text = text_of_diverged_arrays();
  quorix::SearchSettings settings;
  settings.max_unit_length = 10;
  settings.mismatch_score = settings.indel_score = -2;
  settings.detail = quorix::Detail::kAlignment;
  for (const quorix::SearchMode mode :
       {quorix::SearchMode::kExact, quorix::SearchMode::kExtendExact,
        quorix::SearchMode::kImperfect}) {
    settings.mode = mode;
    std::size_t expected = 0;
    const auto count_repeats = [&] {
      std::size_t count = 0;
      quorix::find_repeats(text, settings, [&count](const quorix::Repeat& /*repeat*/) { ++count; });
      return count;
    };
    expected = count_repeats();
    ASSERT_GT(expected, 0U);

    long failures = 0;
    long failing = 0;  // number of the allocation that fails: all of the first, some of the later
    for (bool is_done = false; !is_done; failing += 1 + failing / 8) {
      allocations_left = failing;
      try {
        const std::size_t found = count_repeats();
        is_done = allocations_left >= 0;  // it needed fewer than that
        EXPECT_EQ(found, expected);
        ASSERT_TRUE(is_done) << "allocation " << failing << " failed in silence";
      } catch (const std::bad_alloc&) {
        ++failures;
      }
      allocations_left = -1;
      ASSERT_EQ(count_repeats(), expected) << "after the failure of allocation " << failing;
    }
    EXPECT_GT(failures, 20);
  }
}

}  // namespace

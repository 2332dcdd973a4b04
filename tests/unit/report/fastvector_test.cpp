#include "report/fastvector.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <new>
#include <vector>

// So that memory that cannot be had is refused under the address sanitizer too, as it is without.
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}

namespace quorix {
namespace {

using Numbers = fastvector<std::int32_t>;

Numbers numbers_up_to(int last) {
  Numbers numbers;
  for (int number = 1; number <= last; ++number) numbers.push_back(number);
  return numbers;
}

std::vector<std::int32_t> elements_of(const Numbers& numbers) {
  return {numbers.begin(), numbers.end()};
}

TEST(Fastvector, is_empty_without_a_block_at_first) {
  const Numbers numbers;
  EXPECT_TRUE(numbers.empty());
  EXPECT_EQ(numbers.size(), 0U);
  EXPECT_EQ(numbers.capacity(), 0U);
  EXPECT_EQ(numbers.begin(), nullptr);
  EXPECT_EQ(numbers.end(), nullptr);
}

TEST(Fastvector, starts_with_room_for_4_and_doubles_only_when_full) {
  Numbers numbers;
  std::vector<std::size_t> capacities;
  for (int number = 1; number <= 17; ++number) {
    numbers.push_back(number);
    capacities.push_back(numbers.capacity());
  }
  const std::vector<std::size_t> expected = {4,  4,  4,  4,  8,  8,  8,  8, 16,
                                             16, 16, 16, 16, 16, 16, 16, 32};
  EXPECT_EQ(capacities, expected);
}

TEST(Fastvector, keeps_its_elements_in_order_when_the_block_grows) {
  Numbers numbers = numbers_up_to(1000);
  ASSERT_EQ(numbers.size(), 1000U);
  EXPECT_FALSE(numbers.empty());
  for (std::int32_t number = 1; number <= 1000; ++number) {
    ASSERT_EQ(numbers[static_cast<std::size_t>(number - 1)], number);
  }
}

TEST(Fastvector, reserves_exactly_what_is_asked_for) {
  Numbers numbers;
  numbers.reserve(5);
  EXPECT_EQ(numbers.capacity(), 5U);
  EXPECT_EQ(numbers.size(), 0U);
  numbers.reserve(7);
  EXPECT_EQ(numbers.capacity(), 7U);
}

TEST(Fastvector, leaves_a_block_alone_that_is_large_enough) {
  Numbers numbers = numbers_up_to(4);
  const std::int32_t* const block = numbers.begin();
  numbers.reserve(4);
  numbers.reserve(1);
  numbers.reserve(0);
  EXPECT_EQ(numbers.capacity(), 4U);
  EXPECT_EQ(numbers.begin(), block);
}

TEST(Fastvector, reserves_nothing_for_nothing) {
  Numbers numbers;
  numbers.reserve(0);
  EXPECT_EQ(numbers.capacity(), 0U);
  EXPECT_EQ(numbers.begin(), nullptr);
}

TEST(Fastvector, doubles_a_reserved_block_when_that_is_full) {
  Numbers numbers;
  numbers.reserve(3);
  for (int number = 1; number <= 3; ++number) numbers.push_back(number);
  EXPECT_EQ(numbers.capacity(), 3U);
  numbers.push_back(4);
  EXPECT_EQ(numbers.capacity(), 6U);
  EXPECT_EQ(elements_of(numbers), (std::vector<std::int32_t>{1, 2, 3, 4}));
}

TEST(Fastvector, can_append_one_of_its_own_elements_when_it_is_full) {
  Numbers numbers = numbers_up_to(4);
  numbers.push_back(numbers[0]);
  EXPECT_EQ(elements_of(numbers), (std::vector<std::int32_t>{1, 2, 3, 4, 1}));
}

TEST(Fastvector, keeps_its_block_when_it_is_truncated) {
  Numbers numbers = numbers_up_to(5);
  const std::int32_t* const block = numbers.begin();
  numbers.truncate(2);
  EXPECT_EQ(elements_of(numbers), (std::vector<std::int32_t>{1, 2}));
  numbers.truncate(0);
  EXPECT_TRUE(numbers.empty());
  EXPECT_EQ(numbers.capacity(), 8U);
  EXPECT_EQ(numbers.begin(), block);
}

TEST(Fastvector, gives_a_new_copy_a_block_of_exactly_its_size) {
  const Numbers source = numbers_up_to(5);
  ASSERT_EQ(source.capacity(), 8U);
  const Numbers copy(source);
  EXPECT_EQ(elements_of(copy), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(copy.capacity(), 5U);
  EXPECT_NE(copy.begin(), source.begin());
}

TEST(Fastvector, exchanges_elements_and_blocks) {
  Numbers one = numbers_up_to(5);
  Numbers other = numbers_up_to(2);
  const std::int32_t* const block_of_one = one.begin();
  const std::int32_t* const block_of_other = other.begin();
  one.swap(other);
  EXPECT_EQ(elements_of(one), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(one.capacity(), 4U);
  EXPECT_EQ(one.begin(), block_of_other);
  EXPECT_EQ(elements_of(other), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(other.capacity(), 8U);
  EXPECT_EQ(other.begin(), block_of_one);
}

TEST(Fastvector, gives_a_copy_of_nothing_no_block) {
  Numbers source = numbers_up_to(3);
  source.truncate(0);
  const Numbers copy(source);
  EXPECT_TRUE(copy.empty());
  EXPECT_EQ(copy.capacity(), 0U);
}

TEST(Fastvector, keeps_a_large_enough_block_when_it_is_assigned_to) {
  const Numbers source = numbers_up_to(2);
  Numbers target = numbers_up_to(9);
  const std::int32_t* const block = target.begin();
  target = source;
  EXPECT_EQ(elements_of(target), (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(target.capacity(), 16U);
  EXPECT_EQ(target.begin(), block);
}

TEST(Fastvector, grows_to_exactly_the_size_of_what_is_assigned_to_it) {
  const Numbers source = numbers_up_to(5);
  Numbers target = numbers_up_to(1);
  target = source;
  EXPECT_EQ(elements_of(target), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(target.capacity(), 5U);
}

TEST(Fastvector, stays_as_it_is_when_it_is_assigned_to_itself) {
  Numbers numbers = numbers_up_to(5);
  const Numbers& same = numbers;
  numbers = same;
  EXPECT_EQ(elements_of(numbers), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(numbers.capacity(), 8U);
}

TEST(Fastvector, throws_when_its_first_block_cannot_be_had) {
  const volatile std::size_t most = SIZE_MAX;  // the compiler warns of what it knows
  Numbers numbers;
  EXPECT_THROW(numbers.reserve(most), std::bad_alloc);      // more bytes than can be counted
  EXPECT_THROW(numbers.reserve(most / 4), std::bad_alloc);  // more bytes than there are
  EXPECT_EQ(numbers.capacity(), 0U);
  EXPECT_EQ(numbers.begin(), nullptr);
}

/// Lets what goes to standard output, and nothing else, be what a death test sees.
void show_standard_output_alone() {
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
}

TEST(FastvectorDeathTest, ends_the_process_with_status_0_and_a_message_when_it_cannot_grow) {
  const volatile std::size_t most = SIZE_MAX;
  for (const std::size_t count : {most / 4, most / 4 + 1, most}) {
    EXPECT_EXIT(
        {
          Numbers numbers = numbers_up_to(1);
          show_standard_output_alone();
          numbers.reserve(count);
        },
        ::testing::ExitedWithCode(0), "^Program aborded due to failed realloc!\n$");
  }
}

}  // namespace
}  // namespace quorix

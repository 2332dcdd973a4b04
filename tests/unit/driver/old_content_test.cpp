#include "driver/old_content.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

class COldContent : public ::testing::Test {
 protected:
  /// Looks at a file of this text.
  [[nodiscard]] OldContent look_at(const std::string& text) const {
    return old_content_of(folder_.write("file", text));
  }

  testing::CRunFolder folder_;
};

using OldContentOfFile = COldContent;

TEST_F(OldContentOfFile, is_fasta_by_its_first_byte_alone) {
  EXPECT_EQ(look_at(">"), OldContent::kFasta);
  EXPECT_EQ(look_at(">chr1\nACGT\n"), OldContent::kFasta);
  for (const char* const text :
       {"", "# Results computed with:\n", "\n>chr1\n", " >chr1\n", "ACGT\n"}) {
    EXPECT_EQ(look_at(text), OldContent::kOther) << text;
  }
}

TEST_F(OldContentOfFile, is_gzip_by_its_first_two_bytes_alone) {
  EXPECT_EQ(look_at("\x1f\x8b"), OldContent::kGzip);
  EXPECT_EQ(look_at("\x1f\x8b\b..."), OldContent::kGzip);
  for (const char* const text :
       {"\x1f", "\x8b", "\x8b\x1f", "\x1f\x1f\x8b", "\x1e\x8b", "\x1f\x8a"}) {
    EXPECT_EQ(look_at(text), OldContent::kOther) << text;
  }
}

TEST_F(OldContentOfFile, is_found_through_a_link) {
  folder_.write("genome.fa", ">chr1\nACGT\n");
  folder_.link("link", folder_.path("genome.fa"));
  EXPECT_EQ(old_content_of(folder_.path("link")), OldContent::kFasta);
}

TEST_F(OldContentOfFile, that_is_none_or_a_folder_is_neither) {
  EXPECT_EQ(old_content_of(folder_.path("missing")), OldContent::kOther);
  EXPECT_EQ(old_content_of(folder_.path("")), OldContent::kOther);
}

TEST_F(OldContentOfFile, of_a_pipe_is_left_in_it) {
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int descriptor = ::open(pipe.c_str(), O_RDWR | O_NONBLOCK);
  ASSERT_EQ(::write(descriptor, ">chr1", 5), 5);
  EXPECT_EQ(old_content_of(pipe), OldContent::kOther);
  char text[8];
  EXPECT_EQ(::read(descriptor, text, sizeof text), 5);
  ::close(descriptor);
}

}  // namespace
}  // namespace quorix

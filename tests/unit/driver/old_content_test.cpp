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
  [[nodiscard]] bool is_fasta(const char* text) const {
    return begins_like_fasta(folder_.write("file", text));
  }

  testing::CRunFolder folder_;
};

using OldContent = COldContent;

TEST_F(OldContent, is_like_fasta_by_its_first_byte_alone) {
  EXPECT_TRUE(is_fasta(">"));
  EXPECT_TRUE(is_fasta(">chr1\nACGT\n"));
  for (const char* const text :
       {"", "# Results computed with:\n", "\n>chr1\n", " >chr1\n", "ACGT\n"}) {
    EXPECT_FALSE(is_fasta(text)) << text;
  }
}

TEST_F(OldContent, is_found_through_a_link) {
  folder_.write("genome.fa", ">chr1\nACGT\n");
  folder_.link("link", folder_.path("genome.fa"));
  EXPECT_TRUE(begins_like_fasta(folder_.path("link")));
}

TEST_F(OldContent, of_nothing_or_a_folder_is_not_like_fasta) {
  EXPECT_FALSE(begins_like_fasta(folder_.path("missing")));
  EXPECT_FALSE(begins_like_fasta(folder_.path("")));
}

TEST_F(OldContent, of_a_pipe_is_left_in_it) {
  const std::string pipe = folder_.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const int descriptor = ::open(pipe.c_str(), O_RDWR | O_NONBLOCK);
  ASSERT_EQ(::write(descriptor, ">chr1", 5), 5);
  EXPECT_FALSE(begins_like_fasta(pipe));
  char text[8];
  EXPECT_EQ(::read(descriptor, text, sizeof text), 5);
  ::close(descriptor);
}

}  // namespace
}  // namespace quorix

#include "driver/claimed_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <string>

#include "driver/output_file.h"
#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

class CClaimedFile : public ::testing::Test {
 protected:
  [[nodiscard]] ClaimedFile claim(const std::string& name,
                                  Missing missing = Missing::kCreate) const {
    return claim_file(folder_.path(name), missing);
  }

  testing::CRunFolder folder_;
};

using ClaimedOutput = CClaimedFile;

TEST_F(ClaimedOutput, keeps_what_the_file_holds_until_it_is_emptied) {
  folder_.write("report.txt", "old");
  const ClaimedFile file = claim("report.txt");
  EXPECT_EQ(file.claim, Claim::kHeld);
  EXPECT_EQ(folder_.text("report.txt"), "old");
  EXPECT_TRUE(empty_file(file.descriptor));
  EXPECT_EQ(folder_.text("report.txt"), "");
  ::close(file.descriptor);
}

TEST_F(ClaimedOutput, is_hidden_from_child_processes) {
  const ClaimedFile file = claim("report.txt");
  EXPECT_EQ(::fcntl(file.descriptor, F_GETFD), FD_CLOEXEC);
  ::close(file.descriptor);
}

TEST_F(ClaimedOutput, that_is_missing_is_made_on_request_alone) {
  EXPECT_EQ(claim("report.txt", Missing::kLeave).claim, Claim::kMissing);
  EXPECT_FALSE(folder_.has("report.txt"));
  const ClaimedFile file = claim("report.txt", Missing::kCreate);
  EXPECT_EQ(file.claim, Claim::kHeld);
  EXPECT_TRUE(folder_.has("report.txt"));
  ::close(file.descriptor);
}

TEST_F(ClaimedOutput, that_cannot_be_written_has_failed) {
  folder_.make_folder("folder");
  for (const Missing missing : {Missing::kLeave, Missing::kCreate}) {
    EXPECT_EQ(claim("folder", missing).claim, Claim::kFailed);
  }
  EXPECT_EQ(claim("no folder/report.txt", Missing::kCreate).claim, Claim::kFailed);
}

TEST_F(ClaimedOutput, is_in_use_as_long_as_the_first_claim_is_open) {
  folder_.write("report.txt", "old");
  folder_.hard_link("second name", "report.txt");
  const ClaimedFile first = claim("report.txt");
  ASSERT_EQ(first.claim, Claim::kHeld);
  for (const Missing missing : {Missing::kLeave, Missing::kCreate}) {
    const ClaimedFile second = claim("second name", missing);
    EXPECT_EQ(second.claim, Claim::kInUse);
    EXPECT_EQ(second.descriptor, -1);
  }
  ::close(first.descriptor);
  const ClaimedFile third = claim("second name");
  EXPECT_EQ(third.claim, Claim::kHeld);
  ::close(third.descriptor);
}

TEST_F(ClaimedOutput, is_in_use_under_the_lock_of_any_program) {
  const int reader = ::open(folder_.write("report.txt", "old").c_str(), O_RDONLY);
  ASSERT_EQ(::flock(reader, LOCK_SH), 0);
  EXPECT_EQ(claim("report.txt").claim, Claim::kInUse);
  ::close(reader);
}

TEST_F(ClaimedOutput, that_is_no_regular_file_is_not_locked) {
  const ClaimedFile first = claim_file("/dev/null", Missing::kCreate);
  const ClaimedFile second = claim_file("/dev/null", Missing::kCreate);
  EXPECT_EQ(first.claim, Claim::kHeld);
  EXPECT_EQ(second.claim, Claim::kHeld);
  EXPECT_TRUE(empty_file(first.descriptor));
  ::close(first.descriptor);
  ::close(second.descriptor);
}

TEST_F(ClaimedOutput, that_is_closed_cannot_be_emptied) {
  EXPECT_FALSE(empty_file(-1));
}

TEST_F(ClaimedOutput, of_an_output_file_is_tried_once) {
  folder_.write("report.txt", "old");
  COutputFile file;
  EXPECT_EQ(file.claim(), Claim::kNone);
  EXPECT_FALSE(file.begin());
  EXPECT_EQ(file.claim_name(folder_.path("report.txt"), Missing::kLeave), Claim::kHeld);
  EXPECT_EQ(file.claim_name(folder_.path("report.txt"), Missing::kCreate), Claim::kHeld);
  EXPECT_EQ(folder_.text("report.txt"), "old");
  EXPECT_TRUE(file.begin());
  EXPECT_EQ(folder_.text("report.txt"), "");
}

TEST_F(ClaimedOutput, of_an_output_file_ends_with_it) {
  { COutputFile().claim_name(folder_.path("report.txt"), Missing::kCreate); }
  COutputFile file;
  EXPECT_EQ(file.claim_name(folder_.path("report.txt"), Missing::kLeave), Claim::kHeld);
}

}  // namespace
}  // namespace quorix

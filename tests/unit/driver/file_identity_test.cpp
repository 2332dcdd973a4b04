#include "driver/file_identity.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "unit/driver/run_folder.h"

namespace quorix {
namespace {

bool are_same(const std::string& one, const std::string& other) {
  const CFileIdentity first = CFileIdentity::of_name(one);
  const CFileIdentity second = CFileIdentity::of_name(other);
  EXPECT_EQ(first.is_same_file(second), second.is_same_file(first));
  return first.is_same_file(second);
}

TEST(FileIdentity, is_that_of_the_file_itself) {
  const testing::CRunFolder folder;
  const std::string in = folder.write("in.fa", ">a\n");
  EXPECT_TRUE(are_same(in, in));
  EXPECT_TRUE(are_same(in, folder.path("./in.fa")));
  EXPECT_FALSE(are_same(in, folder.write("other.fa", ">a\n")));
}

TEST(FileIdentity, is_seen_through_links) {
  const testing::CRunFolder folder;
  const std::string in = folder.write("in.fa", ">a\n");
  folder.link("link", "in.fa");
  folder.link("link to link", "link");
  folder.hard_link("second name", "in.fa");
  EXPECT_TRUE(are_same(in, folder.path("link")));
  EXPECT_TRUE(are_same(in, folder.path("link to link")));
  EXPECT_TRUE(are_same(in, folder.path("second name")));
  EXPECT_TRUE(are_same(folder.path("link"), folder.path("second name")));
}

TEST(FileIdentity, of_a_file_to_come_is_its_resolved_name) {
  const testing::CRunFolder folder;
  folder.make_folder("room");
  folder.link("door", "room");
  EXPECT_TRUE(are_same(folder.path("new"), folder.path("new")));
  EXPECT_TRUE(are_same(folder.path("new"), folder.path("room/../new")));
  EXPECT_TRUE(are_same(folder.path("room/new"), folder.path("door/new")));
  EXPECT_FALSE(are_same(folder.path("new"), folder.path("room/new")));
  EXPECT_FALSE(are_same(folder.path("new"), folder.path("newer")));
}

TEST(FileIdentity, of_a_dangling_link_is_that_of_the_file_that_it_would_create) {
  const testing::CRunFolder folder;
  folder.make_folder("room");
  folder.link("relative", "room/new");
  folder.link("absolute", folder.path("room/new"));
  folder.link("room/chain", "../relative");
  EXPECT_TRUE(are_same(folder.path("relative"), folder.path("room/new")));
  EXPECT_TRUE(are_same(folder.path("absolute"), folder.path("room/new")));
  EXPECT_TRUE(are_same(folder.path("room/chain"), folder.path("room/new")));
  EXPECT_FALSE(are_same(folder.path("relative"), folder.path("new")));
}

TEST(FileIdentity, of_a_bare_name_to_come_is_in_the_working_directory) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_TRUE(are_same("quorix-no-such-file", here + "/quorix-no-such-file"));
  EXPECT_FALSE(are_same("quorix-no-such-file", here + "/quorix-no-other-file"));
}

TEST(FileIdentity, of_a_file_to_come_is_not_that_of_one_that_exists) {
  const testing::CRunFolder folder;
  EXPECT_FALSE(are_same(folder.write("in.fa", ""), folder.path("new")));
}

TEST(FileIdentity, is_lacking_where_no_file_can_come_to_be) {
  const testing::CRunFolder folder;
  EXPECT_FALSE(are_same(folder.path("no folder/new"), folder.path("no folder/new")));
}

TEST(FileIdentity, ends_links_that_lead_in_a_circle) {
  const testing::CRunFolder folder;
  folder.link("one", "other");
  folder.link("other", "one");
  EXPECT_FALSE(are_same(folder.path("one"), folder.path("new")));
}

TEST(FileIdentity, is_lacking_where_writing_destroys_nothing) {
  const testing::CRunFolder folder;
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_FALSE(are_same("/dev/null", "/dev/null"));
  EXPECT_FALSE(are_same(pipe, pipe));
  EXPECT_FALSE(are_same(folder.path("."), folder.path(".")));
}

TEST(FileIdentity, of_a_descriptor_is_that_of_its_file) {
  const testing::CRunFolder folder;
  const std::string in = folder.write("in.fa", ">a\n");
  std::FILE* const file = std::fopen(in.c_str(), "r");
  ASSERT_NE(file, nullptr);
  const CFileIdentity open = CFileIdentity::of_descriptor(::fileno(file));
  std::fclose(file);
  EXPECT_TRUE(open.is_same_file(CFileIdentity::of_name(in)));
  EXPECT_FALSE(open.is_same_file(CFileIdentity::of_name(folder.write("other.fa", ""))));
}

TEST(FileIdentity, of_a_descriptor_without_a_regular_file_is_lacking) {
  std::FILE* const file = std::fopen("/dev/null", "w");
  ASSERT_NE(file, nullptr);
  const CFileIdentity null = CFileIdentity::of_descriptor(::fileno(file));
  std::fclose(file);
  EXPECT_FALSE(null.is_same_file(null));
  const CFileIdentity closed = CFileIdentity::of_descriptor(-1);
  EXPECT_FALSE(closed.is_same_file(closed));
}

}  // namespace
}  // namespace quorix

// Marker files, deletion of files and directories, and song trees.
#include <gtest/gtest.h>
#include <sys/mount.h>

#include <climits>
#include <functional>
#include <string>

#include "support/child_process.h"
#include "support/device_image.h"
#include "zansong/storage/files.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::DropToNobody;
using zansong_test::kChildSetupFailed;
using zansong_test::MakeDirReadOnlyForThisProcess;
using zansong_test::MakeDirs;
using zansong_test::OpenPathToOthers;
using zansong_test::PathExists;
using zansong_test::ReadFile;
using zansong_test::RunInChild;
using zansong_test::WriteFile;

class RemoveTest : public DeviceTest {
 protected:
  void SetUp() override {
    dir_ = image_.Path("/tmp/rm/");
    MakeDirs(dir_);
  }
  std::string P(const std::string& name) { return dir_ + name; }
  int Tree(const std::string& dir, bool removeSelf, bool recurse, bool withJpg) {
    std::string copy = dir;
    return RemoveDirTree(&copy[0], removeSelf, recurse, withJpg);
  }
  std::string dir_;
};

TEST_F(RemoveTest, CreateOneTimeRestoreFileMakesEmptyFile) {
  WriteFile(P("restore"), "old content");
  EXPECT_EQ(CreateOneTimeRestoreFile(P("restore").c_str()), 1);
  EXPECT_TRUE(PathExists(P("restore")));
  EXPECT_EQ(ReadFile(P("restore")), "");
  EXPECT_EQ(CreateOneTimeRestoreFile(P("nodir/restore").c_str()), 0);
}

TEST_F(RemoveTest, IsWritableLeavesNoProbe) {
  EXPECT_EQ(is_Writable(P("probe").c_str()), 1);
  EXPECT_FALSE(PathExists(P("probe")));
  EXPECT_EQ(is_Writable(P("nodir/probe").c_str()), 0);
}

TEST_F(RemoveTest, DeleteFile) {
  WriteFile(P("f"), "x");
  EXPECT_EQ(DeleteFile(P("f").c_str()), 1);
  EXPECT_FALSE(PathExists(P("f")));
  EXPECT_EQ(DeleteFile(P("f").c_str()), 0);
  MakeDirs(P("d"));
  EXPECT_EQ(DeleteFile(P("d").c_str()), 0);
}

TEST_F(RemoveTest, RemoveDirDeletesFilesAndItself) {
  MakeDirs(P("a"));
  WriteFile(P("a/x.mid"), "");
  WriteFile(P("a/.zanalbum"), "t");
  EXPECT_EQ(RemoveDir(P("a/").c_str(), true), 1);
  EXPECT_FALSE(PathExists(P("a")));
}

TEST_F(RemoveTest, RemoveDirKeepsSelfWhenAsked) {
  MakeDirs(P("a"));
  WriteFile(P("a/x.txt"), "");
  EXPECT_EQ(RemoveDir(P("a/").c_str(), false), 1);
  EXPECT_TRUE(PathExists(P("a")));
  EXPECT_FALSE(PathExists(P("a/x.txt")));
}

TEST_F(RemoveTest, RemoveDirLeavesSubdirectories) {
  MakeDirs(P("a/sub"));
  WriteFile(P("a/sub/x.mid"), "");
  WriteFile(P("a/y.mid"), "");
  EXPECT_EQ(RemoveDir(P("a/").c_str(), true), 0);
  EXPECT_TRUE(PathExists(P("a/sub/x.mid")));
  EXPECT_FALSE(PathExists(P("a/y.mid")));
  EXPECT_EQ(RemoveDir(P("a/").c_str(), false), 1);
}

TEST_F(RemoveTest, RemoveDirMissingGivesZero) {
  EXPECT_EQ(RemoveDir(P("none/").c_str(), false), 0);
  EXPECT_EQ(RemoveDir(P("none/").c_str(), true), 0);
}

// ---- Song trees ----

void MakeSongTree(const std::string& top) {
  MakeDirs(top + "001_Album/Disc 2");
  WriteFile(top + "a.mid", "m");
  WriteFile(top + "a.WAV", "w");
  WriteFile(top + "b.Mp3", "p");
  WriteFile(top + "001_Album/c.MID", "m");
  WriteFile(top + "001_Album/Disc 2/d.mid", "m");
  WriteFile(top + "001_Album/Disc 2/e.mp3", "p");
}

TEST_F(RemoveTest, TreeWithoutRecurseKeepsSubdirectories) {
  MakeSongTree(P("t/"));
  EXPECT_EQ(Tree(P("t/"), true, false, false), -4);
  EXPECT_FALSE(PathExists(P("t/a.mid")));
  EXPECT_FALSE(PathExists(P("t/a.WAV")));
  EXPECT_FALSE(PathExists(P("t/b.Mp3")));
  EXPECT_TRUE(PathExists(P("t/001_Album/c.MID")));
  EXPECT_TRUE(PathExists(P("t/001_Album/Disc 2/d.mid")));
}

TEST_F(RemoveTest, TreeWithRecurseRemovesEverything) {
  MakeSongTree(P("t/"));
  EXPECT_EQ(Tree(P("t/"), true, true, false), 0);
  EXPECT_FALSE(PathExists(P("t")));
}

TEST_F(RemoveTest, TreeWithRecurseKeepsSelfWhenAsked) {
  MakeSongTree(P("t/"));
  EXPECT_EQ(Tree(P("t/"), false, true, false), 0);
  EXPECT_TRUE(PathExists(P("t")));
  EXPECT_FALSE(PathExists(P("t/001_Album")));
  EXPECT_FALSE(PathExists(P("t/a.mid")));
}

TEST_F(RemoveTest, EmptyDirectoryIsRemoved) {
  MakeDirs(P("e"));
  EXPECT_EQ(Tree(P("e/"), true, false, false), 0);
  EXPECT_FALSE(PathExists(P("e")));
}

TEST_F(RemoveTest, JpgCompanionsGoWithTheirSongs) {
  MakeDirs(P("t/sub"));
  for (const char* name :
       {"a.mid", "a.jpg", "b.wav", "b.jpg", "c.mp3", "c.jpg", "sub/d.mid", "sub/d.jpg"}) {
    WriteFile(P("t/") + name, "x");
  }
  EXPECT_EQ(Tree(P("t/"), true, true, true), 0);
  EXPECT_FALSE(PathExists(P("t")));
}

TEST_F(RemoveTest, JpgKeptWithoutWithJpg) {
  MakeDirs(P("t"));
  WriteFile(P("t/a.mid"), "x");
  WriteFile(P("t/a.jpg"), "x");
  EXPECT_EQ(Tree(P("t/"), true, false, false), -4);
  EXPECT_FALSE(PathExists(P("t/a.mid")));
  EXPECT_TRUE(PathExists(P("t/a.jpg")));
}

TEST_F(RemoveTest, PictureWithoutSongIsLeftOver) {
  MakeDirs(P("t"));
  WriteFile(P("t/a.mid"), "x");
  WriteFile(P("t/a.jpg"), "x");
  WriteFile(P("t/cover.jpg"), "x");
  EXPECT_EQ(Tree(P("t/"), true, false, true), -4);
  EXPECT_FALSE(PathExists(P("t/a.jpg")));
  EXPECT_TRUE(PathExists(P("t/cover.jpg")));
}

TEST_F(RemoveTest, TextFileLeftOverKeepsDirectory) {
  MakeDirs(P("t"));
  WriteFile(P("t/a.mid"), "x");
  WriteFile(P("t/b.MP3"), "x");
  WriteFile(P("t/notes.txt"), "x");
  EXPECT_EQ(Tree(P("t/"), true, false, false), -4);
  EXPECT_TRUE(PathExists(P("t/notes.txt")));
  EXPECT_FALSE(PathExists(P("t/a.mid")));
  EXPECT_FALSE(PathExists(P("t/b.MP3")));
}

TEST_F(RemoveTest, TextFileDeepInTreeKeepsItsDirectories) {
  MakeSongTree(P("t/"));
  WriteFile(P("t/001_Album/Disc 2/readme.txt"), "x");
  int r = Tree(P("t/"), true, true, false);
  // The subtree's -4 is the last subdirectory result, and it also keeps
  // the top directory from being removed.
  EXPECT_EQ(r, -4);
  EXPECT_TRUE(PathExists(P("t/001_Album/Disc 2/readme.txt")));
  EXPECT_FALSE(PathExists(P("t/001_Album/Disc 2/d.mid")));
  EXPECT_FALSE(PathExists(P("t/001_Album/c.MID")));
  EXPECT_FALSE(PathExists(P("t/a.mid")));
}

TEST_F(RemoveTest, MissingDirectoryGivesMinusOne) {
  EXPECT_EQ(Tree(P("none/"), true, true, true), -1);
}

// Runs fn (whose result must lie in -128..127 and differ from
// kChildSetupFailed) in a child process that sees dir read-only, and returns fn's result; sets
// *skipReason when no way to make dir read-only for that process works here.  The first choice is
// a read-only bind mount in a private mount namespace; the second is to
// drop to the unprivileged user nobody, who may not change a directory
// owned by root with mode 0755.
int RunWithReadOnlyDir(const std::string& dir, const std::function<int()>& fn,
                       std::string* skipReason) {
  int status = RunInChild([&] {
    if (!MakeDirReadOnlyForThisProcess(dir) && !DropToNobody()) return kChildSetupFailed;
    return fn();
  });
  if (status == kChildSetupFailed) {
    *skipReason = "neither a read-only bind mount nor an unprivileged user is available";
    return 0;
  }
  if (status < 0) {
    ADD_FAILURE() << "the child process did not exit normally";
    return INT_MIN;
  }
  return static_cast<signed char>(status);
}

TEST_F(RemoveTest, UndeletableSongGivesMinusThree) {
  MakeDirs(P("t"));
  WriteFile(P("t/a.mid"), "x");
  // The whole path must be open to an unprivileged user, and the tree
  // itself owned by root with mode 0755 so that such a user cannot change it.
  OpenPathToOthers(P("t"), image_.root());

  std::string dir = P("t/");
  std::string skip;
  int r = RunWithReadOnlyDir(
      P("t"), [&] { return Tree(dir, true, false, false); }, &skip);
  if (!skip.empty()) GTEST_SKIP() << skip;
  EXPECT_EQ(r, -3);
  EXPECT_TRUE(PathExists(P("t/a.mid")));
  EXPECT_TRUE(PathExists(P("t")));
}

TEST_F(RemoveTest, UndeletableDirectoryGivesMinusThree) {
  // The songs can go, but the directory itself cannot: its parent is
  // read-only (and the directory is a mount point there).
  MakeDirs(P("p/t"));
  WriteFile(P("p/t/a.mid"), "x");
  std::string dir = P("p/t/");
  std::string skip;
  int r = RunWithReadOnlyDir(
      P("p"),
      [&] {
        // The directory is mounted back writable over the read-only parent;
        // an unprivileged user cannot do that.
        bool writable = mount(dir.c_str(), dir.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
                        mount(nullptr, dir.c_str(), nullptr, MS_REMOUNT | MS_BIND, nullptr) == 0;
        return writable ? Tree(dir, true, false, false) : -100;
      },
      &skip);
  if (!skip.empty()) GTEST_SKIP() << skip;
  if (r == -100) GTEST_SKIP() << "no mount namespace for a writable directory in a read-only one";
  EXPECT_EQ(r, -3);
  EXPECT_FALSE(PathExists(P("p/t/a.mid")));
  EXPECT_TRUE(PathExists(P("p/t")));
}

}  // namespace

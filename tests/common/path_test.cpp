#include "zansong/common/path.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Split {
  int result;
  std::string out;
};

Split Dir(const char* path) {
  char out[256];
  const int result = ExtractFileDirX(path, out);
  return {result, out};
}
Split Name(const char* path) {
  char out[256];
  const int result = ExtractFileNameX(path, out);
  return {result, out};
}
Split Ext(const char* path) {
  char out[256];
  const int result = ExtractFileExtX(path, out);
  return {result, out};
}
Split Change(const char* path, const char* ext) {
  char out[256] = "untouched";
  const int result = ChangeFileExtX(path, ext, out);
  return {result, out};
}

TEST(PathTest, DirIsEverythingBeforeTheLastSeparator) {
  EXPECT_EQ(1, Dir("/a/b/c.mid").result);
  EXPECT_EQ("/a/b", Dir("/a/b/c.mid").out);
  EXPECT_EQ("/a/b", Dir("/a/b/").out);
  EXPECT_EQ("", Dir("/c.mid").out);
  EXPECT_EQ("a\\b", Dir("a\\b\\c").out);
  EXPECT_EQ("C:", Dir("C:c.mid").out);  // a final ":" is kept
}

TEST(PathTest, DirOfBareNameIsTheName) {
  EXPECT_EQ(1, Dir("c.mid").result);
  EXPECT_EQ("c.mid", Dir("c.mid").out);
  EXPECT_EQ("", Dir("").out);
}

TEST(PathTest, NameIsThePartAfterTheLastSeparator) {
  EXPECT_EQ(1, Name("/a/b/c.mid").result);
  EXPECT_EQ("c.mid", Name("/a/b/c.mid").out);
  EXPECT_EQ("c", Name("x:c").out);
  EXPECT_EQ("c", Name("x\\c").out);
}

TEST(PathTest, NameAfterFinalSeparatorIsEmptyAndFails) {
  EXPECT_EQ(0, Name("/a/b/").result);
  EXPECT_EQ("", Name("/a/b/").out);
}

TEST(PathTest, NameWithoutSeparatorIsThePathAndFails) {
  EXPECT_EQ(0, Name("c.mid").result);
  EXPECT_EQ("c.mid", Name("c.mid").out);
}

TEST(PathTest, ExtensionIncludesTheDot) {
  EXPECT_EQ(1, Ext("/a/b/c.mid").result);
  EXPECT_EQ(".mid", Ext("/a/b/c.mid").out);
  EXPECT_EQ(".gz", Ext("c.tar.gz").out);
  EXPECT_EQ(".", Ext("c.").out);
}

TEST(PathTest, ExtensionSearchStopsAtASeparator) {
  EXPECT_EQ(0, Ext("/a.b/c").result);
  EXPECT_EQ("", Ext("/a.b/c").out);
  EXPECT_EQ(0, Ext("c").result);
  EXPECT_EQ("", Ext("c").out);
}

TEST(PathTest, ChangeExtensionReplacesTheLastDotPart) {
  EXPECT_EQ(1, Change("c.wav", ".mid").result);
  EXPECT_EQ("c.mid", Change("c.wav", ".mid").out);
  EXPECT_EQ("/a/c.mid", Change("/a/c.wav", ".mid").out);
  EXPECT_EQ("c.tar.mid", Change("c.tar.gz", ".mid").out);
}

TEST(PathTest, ChangeExtensionWithoutDotAppends) {
  EXPECT_EQ(1, Change("c", ".mid").result);
  EXPECT_EQ("c.mid", Change("c", ".mid").out);
  EXPECT_EQ(".hidden.mid", Change(".hidden", ".mid").out);  // a dot at the very start is kept
}

TEST(PathTest, ChangeExtensionSearchCrossesSeparators) {
  EXPECT_EQ(1, Change("/a.b/c", ".mid").result);
  EXPECT_EQ("/a.mid", Change("/a.b/c", ".mid").out);
}

TEST(PathTest, ChangeExtensionOfDirectoryFailsAndWritesNothing) {
  EXPECT_EQ(0, Change("/a/b/", ".mid").result);
  EXPECT_EQ("untouched", Change("/a/b/", ".mid").out);
  EXPECT_EQ(0, Change("a:", ".mid").result);
}

TEST(PathTest, TSStringForms) {
  EXPECT_STREQ("/a/b", ExtractFileDirSX(TSString("/a/b/c.mid")).c_str());
  EXPECT_STREQ("c.mid", ExtractFileNameSX(TSString("/a/b/c.mid")).c_str());
  EXPECT_STREQ("", ExtractFileNameSX(TSString("/a/b/")).c_str());
  EXPECT_STREQ(".mid", ExtractFileExtSX(TSString("/a/b/c.mid")).c_str());
  EXPECT_STREQ("", ExtractFileExtSX(TSString("/a.b/c")).c_str());
  EXPECT_STREQ("/a/b/c.BAK", ChangeFileExtSX(TSString("/a/b/c.mid"), TSString(".BAK")).c_str());
  EXPECT_STREQ("", ChangeFileExtSX(TSString("/a/b/"), TSString(".BAK")).c_str());
  EXPECT_STREQ(".mid", ChangeFileExtSX(TSString(), TSString(".mid")).c_str());
  EXPECT_STREQ("", ExtractFileDirSX(TSString()).c_str());
}

}  // namespace

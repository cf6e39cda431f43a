// SongInfo and getprefix, the storage prefix of a category folder.
#include "zansong/db/songinfo.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace zansong_test {
namespace {

TEST(SongInfoTest, StartsEmpty) {
  SongInfo info;
  EXPECT_EQ(0, info.title.Length());
  EXPECT_EQ(0, info.albumPath.Length());
  EXPECT_EQ(0, info.coverartPath.Length());
}

TEST(GetPrefixTest, MapsCategoriesExactly) {
  const std::vector<std::pair<const char*, const char*>> cases = {{"Recorded Songs", "r"},
                                                                  {"rec", "i"},
                                                                  {"Downloaded Songs", "y"},
                                                                  {"FromToPC", "f"},
                                                                  {"preset", "d"},
                                                                  {"recorded songs", "s"},
                                                                  {"User", "s"},
                                                                  {"Recorded Songs ", "s"},
                                                                  {"", "s"}};
  for (const auto& c : cases) {
    TSString category(c.first);
    EXPECT_EQ(std::string(c.second), getprefix(category).c_str()) << c.first;
  }
}

}  // namespace
}  // namespace zansong_test

// Query targets of an add-to-playlist list: expanded from the internal
// catalogue and the request's own, and the progress discount.
#include "async/query_targets.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "support/stdout_capture.h"
#include "zansong/fileman/messages.h"

namespace {

using zansong::ExpandQueryTargets;
using zansong::QueryCatalogues;
using zansong::ShowAddToPlaylistProgress;
using zansong_test::ExecOn;
using zansong_test::StdoutCapture;

TargetInfo Query(const char* sql) {
  TargetInfo t{};
  t.type = kTargetQuery;
  std::strncpy(t.sql, sql, sizeof t.sql - 1);
  return t;
}

TargetInfo Song(char pfix, int id) {
  TargetInfo t{};
  t.type = kTargetSong;
  t.pfix = pfix;
  t.id = id;
  return t;
}

std::vector<std::string> Describe(const std::vector<TargetInfo>& targets) {
  std::vector<std::string> out;
  for (const TargetInfo& t : targets) {
    out.push_back(std::to_string(t.type) + ":" + std::string(1, t.pfix ? t.pfix : '-') + ":" +
                  std::to_string(t.id));
  }
  return out;
}

class QueryTargetsTest : public zansong_test::DeviceTest {
 protected:
  void SetUp() override {
    internal_ = image_.SongRoot() + ".zansong.db";
    stick_ = image_.UsbRoot();
    zansong_test::CreateCatalogue(image_, internal_);
    zansong_test::CreateCatalogue(image_, stick_ + ".zansong.db");
    ExecOn(internal_,
           "INSERT INTO song(pfix,song_id,song_title) VALUES('s',1,'a'),('y',2,'b'),('s',3,'x')");
    ExecOn(stick_ + ".zansong.db", "INSERT INTO song(pfix,song_id,song_title) VALUES('f',7,'a')");
  }
  std::string internal_;
  std::string stick_;
};

TEST_F(QueryTargetsTest, QueryRowsOfBothCataloguesBecomeSongTargets) {
  std::vector<TargetInfo> targets = {
      Query("select pfix, song_id from song where song_title <> 'x' order by song_id"),
      Song('s', 3)};
  QueryCatalogues catalogues;
  EXPECT_EQ(ExpandQueryTargets(stick_.c_str(), targets, catalogues), 1);
  EXPECT_EQ(Describe(targets),
            (std::vector<std::string>{"5:-:0", "1:s:3", "1:s:1", "1:y:2", "1:f:7"}));
}

TEST_F(QueryTargetsTest, ColumnNamesMatchWithoutCase) {
  std::vector<TargetInfo> targets = {Query("select SONG_ID, Pfix from song where song_id=2"),
                                     Query("select 9 as song_id")};
  QueryCatalogues catalogues;
  EXPECT_EQ(ExpandQueryTargets(stick_.c_str(), targets, catalogues), 2);
  // The second query names no pfix: the letter stays empty.
  EXPECT_EQ(Describe(targets),
            (std::vector<std::string>{"5:-:0", "5:-:0", "1:y:2", "1:-:9", "1:-:9"}));
}

TEST_F(QueryTargetsTest, InternalRootRunsTheQueryTwiceOnTheSameCatalogue) {
  std::vector<TargetInfo> targets = {Query("select pfix,song_id from song where song_id=1")};
  QueryCatalogues catalogues;
  ExpandQueryTargets(image_.SongRoot().c_str(), targets, catalogues);
  EXPECT_EQ(Describe(targets), (std::vector<std::string>{"5:-:0", "1:s:1", "1:s:1"}));
}

TEST_F(QueryTargetsTest, BadQueryAddsNothing) {
  std::vector<TargetInfo> targets = {Query("select nonsense from nowhere"), Song('s', 1)};
  QueryCatalogues catalogues;
  EXPECT_EQ(ExpandQueryTargets(stick_.c_str(), targets, catalogues), 1);
  EXPECT_EQ(targets.size(), 2u);
}

TEST_F(QueryTargetsTest, ProgressDiscountsTheQueryTargets) {
  // One query first, yielding three songs: four targets, three shown.
  auto shown = [](int n) {
    StdoutCapture out;
    ShowAddToPlaylistProgress(n, 1, 4);
    return out.Finish();
  };
  auto expected = [](int done, int total) {
    StdoutCapture out;
    PrintAddToPlaylistMessage(done, total);
    return out.Finish();
  };
  EXPECT_EQ(shown(3), expected(2, 3));
  EXPECT_EQ(shown(1), expected(1, 3));
  EXPECT_EQ(shown(0), expected(0, 3));
}

}  // namespace

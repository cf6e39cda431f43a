// CatalogueSession: opening the catalogue of a root, the failure lines, and
// the commit and close on every exit.
#include "fileman/catalogue_session.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "support/catalogue_fixture.h"
#include "support/fault_injection.h"
#include "support/stdout_capture.h"

namespace zansong_test {
namespace {

using zansong::CatalogueSession;

class CatalogueSessionTest : public DeviceTest {
 protected:
  std::string Root() const { return image_.SongRoot(); }
  int Albums() { return IntOn(Root() + ".zansong.db", "SELECT COUNT(*) FROM album"); }

  // A root whose catalogue cannot be created: its directory is missing.
  std::string Missing() const { return image_.Path("/nowhere/"); }

  // What a session on a root without catalogue prints beyond InitDB's own
  // "Create DB error!".
  std::string FailureLineOf(CatalogueSession::FailureLine line) {
    StdoutCapture out;
    {
      CatalogueSession session(Missing().c_str(), line);
      EXPECT_FALSE(session.ok());
      EXPECT_EQ(CatalogueSession::Step::kInit, session.failedStep());
    }
    std::string printed = out.Finish();
    const std::string own = "Create DB error!";
    EXPECT_EQ(0u, printed.find(own)) << printed;
    return printed.substr(own.size());
  }
};

TEST_F(CatalogueSessionTest, OpensTheCatalogueOfTheRoot) {
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  EXPECT_EQ(CatalogueSession::Step::kNone, session.failedStep());
  EXPECT_NE(nullptr, session.man().db);
  EXPECT_EQ(Root() + ".zansong.db", session.man().dbPath.c_str());
  EXPECT_EQ(1, session.man().CreateAlbum("A", "A", "", "s"));
  EXPECT_EQ(1, Albums());
}

TEST_F(CatalogueSessionTest, FailureLinesAfterAFailedInit) {
  EXPECT_EQ("", FailureLineOf(CatalogueSession::FailureLine::kNone));
  EXPECT_EQ("DB Create Error\n", FailureLineOf(CatalogueSession::FailureLine::kCreateOrOpen));
  EXPECT_EQ("DB Open Error\n", FailureLineOf(CatalogueSession::FailureLine::kOpen));
}

TEST_F(CatalogueSessionTest, TheEndOfTheSessionCommitsTheBatchAndCloses) {
  {
    CatalogueSession session(Root().c_str());
    ASSERT_TRUE(session.ok());
    session.batch().BeforeWrite();
    ASSERT_EQ(1, session.man().CreateAlbum("A", "A", "", "s"));
    // Within the batch's open transaction: not yet seen by another
    // connection.  (AfterWrite is not called: it commits as soon as the
    // write took longer than the hold budget, as it may on a slow machine.)
    EXPECT_EQ(0, Albums());
  }
  EXPECT_EQ(1, Albums());
}

TEST_F(CatalogueSessionTest, CommitKeepsTheRowsAndTheSessionOpen) {
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  session.batch().BeforeWrite();
  session.man().CreateAlbum("A", "A", "", "s");
  session.Commit();
  EXPECT_EQ(1, Albums());
  EXPECT_NE(nullptr, session.man().db);
}

TEST_F(CatalogueSessionTest, AnEarlyCloseEndsTheConnectionOnce) {
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  session.batch().BeforeWrite();
  session.man().CreateAlbum("A", "A", "", "s");
  session.Close();
  EXPECT_EQ(nullptr, session.man().db);
  EXPECT_EQ(1, Albums());
  // Work after the close finds no connection, as the operations that close
  // inside a loop expect; a second close does nothing.
  StdoutCapture out;
  EXPECT_EQ(0, session.man().SetTextByID("album", "album_title", 1, "B"));
  out.Finish();
  session.Close();
  EXPECT_EQ("A", TextOn(Root() + ".zansong.db", "SELECT album_title FROM album"));
}

TEST_F(CatalogueSessionTest, AFailedCommitMakesCloseFalse) {
  InstallCatalogueShim();
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  session.batch().BeforeWrite();
  ASSERT_EQ(1, session.man().CreateAlbum("A", "A", "", "s"));
  StdoutCapture out;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_FALSE(session.Close());
  EXPECT_TRUE(session.writeFailed());
  EXPECT_FALSE(session.Close());  // and stays so
  EXPECT_EQ(0u, out.Finish().rfind("DB: error ", 0));
}

TEST_F(CatalogueSessionTest, CloseIsTrueWhenEveryCommitSucceeded) {
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  session.batch().BeforeWrite();
  ASSERT_EQ(1, session.man().CreateAlbum("A", "A", "", "s"));
  EXPECT_TRUE(session.Close());
  EXPECT_FALSE(session.writeFailed());
  EXPECT_EQ(1, Albums());
}

TEST_F(CatalogueSessionTest, InsertGivesTheKeyOfAWrittenRowAndZeroForAFailedOne) {
  InstallCatalogueShim();
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  EXPECT_EQ(1, session.Insert([&] { return session.man().CreatePlaylist("P", "l"); }));
  ASSERT_TRUE(session.Commit());
  // An insert that fails: the manager still hands out the next key.
  StdoutCapture out;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(0, session.Insert([&] { return session.man().CreatePlaylist("Q", "l"); }));
  out.Finish();
}

TEST_F(CatalogueSessionTest, WriteIsFalseForAFailedStatement) {
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  StdoutCapture out;
  EXPECT_TRUE(session.Write([&] { return session.man().DeleteData("album", "album_id", "1"); }));
  EXPECT_FALSE(session.Write([&] { return session.man().DeleteData("nosuchtable", "id", "1"); }));
  out.Finish();
}

TEST_F(CatalogueSessionTest, FinishGivesTheFailureCodeWhenTheLastCommitFails) {
  InstallCatalogueShim();
  {
    CatalogueSession session(Root().c_str());
    ASSERT_TRUE(session.ok());
    EXPECT_NE(0, session.Insert([&] { return session.man().CreatePlaylist("P", "l"); }));
    EXPECT_EQ(7, session.Finish(7, -26));
  }
  CatalogueSession session(Root().c_str());
  ASSERT_TRUE(session.ok());
  session.batch().BeforeWrite();
  ASSERT_EQ(1, session.man().CreateAlbum("A", "A", "", "s"));
  StdoutCapture out;
  FaultArm full(FaultTarget::kCatalogue, 1);
  EXPECT_EQ(-26, session.Finish(7, -26));
  out.Finish();
}

}  // namespace
}  // namespace zansong_test

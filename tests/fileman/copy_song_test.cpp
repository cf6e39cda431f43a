// Copying songs into an album and moving recordings into the keep album:
// files, rows, progress lines and every result code.
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <list>
#include <string>
#include <thread>
#include <vector>

#include "fileman/copy_test_helpers.h"
#include "support/child_process.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/messages.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"

namespace zansong_test {
namespace {

class CopySongTest : public CopyTest {
 protected:
  int Copy(std::list<int> ids, int albumId) {
    StdoutCapture capture;
    int result = FH_copy_song_usb(Root().c_str(), ids, albumId);
    printed_ = capture.Finish();
    return result;
  }
  std::string printed_;
};

TEST_F(CopySongTest, CopiesASongIntoAnotherAlbumWithANewRow) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/blue.mid", "Blue Moon");
  Register();
  ASSERT_EQ(kResultOk, Copy({SongId("Jazz/blue.mid")}, AlbumId("Best")));
  EXPECT_EQ(ReadFile(Root() + "Jazz/blue.mid"), ReadFile(Root() + "Best/blue.mid"));
  EXPECT_EQ(SongsOf(AlbumId("Best")), (std::vector<std::string>{"Blue Moon|Best/blue.mid||SMF|s"}));
  EXPECT_EQ(1u, SongsOf(AlbumId("Jazz")).size());
  EXPECT_EQ("", printed_);
}

TEST_F(CopySongTest, ACopyIntoTheSameAlbumIsNumbered) {
  MakeDirs(Root() + "Jazz");
  WriteSongFile(Root() + "Jazz/blue.mid", "Blue");
  Register();
  const int jazz = AlbumId("Jazz");
  ASSERT_EQ(kResultOk, Copy({SongId("Jazz/blue.mid")}, jazz));
  EXPECT_TRUE(PathExists(Root() + "Jazz/blue_002.mid"));
  EXPECT_EQ(SongsOf(jazz), (std::vector<std::string>{"Blue|Jazz/blue.mid||SMF|s",
                                                     "Blue|Jazz/blue_002.mid||SMF|s"}));
}

TEST_F(CopySongTest, AnAudioSongWithMidiKeepsBothFilesUnderOneNewName) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/take.mid", "Take");
  WriteWavSong(Root() + "Jazz/take.wav", 500);
  WriteSongFile(Root() + "Best/take.mid", "Other");
  Register();
  ASSERT_EQ(kResultOk, Copy({SongId("Jazz/take.mid")}, AlbumId("Best")));
  EXPECT_EQ(ReadFile(Root() + "Jazz/take.wav"), ReadFile(Root() + "Best/take_002.wav"));
  EXPECT_TRUE(PathExists(Root() + "Best/take_002.mid"));
  EXPECT_EQ(SongsOf(AlbumId("Best")).back(), "Take|Best/take_002.mid|Best/take_002.wav|SMF,WAV|s");
}

TEST_F(CopySongTest, MovingARecordingIntoTheKeepFolderGivesItTheSuffix002) {
  MakeDirs(Root() + "Recorded Songs/Temporary Folder");
  MakeDirs(Root() + "Recorded Songs/Keep");
  WriteSongFile(Root() + "Recorded Songs/Temporary Folder/take.mid", "Take");
  WriteSongFile(Root() + "Recorded Songs/Keep/take.mid", "Earlier");
  Register("Recorded Songs");
  const int song = SongId("Recorded Songs/Temporary Folder/take.mid");
  ASSERT_TRUE(
      Execute(Db(), "INSERT INTO psong VALUES('l',1,1,'r'," + std::to_string(song) + ",1)"));
  ASSERT_EQ(kResultOk, Copy({song}, 0));
  EXPECT_FALSE(PathExists(Root() + "Recorded Songs/Temporary Folder/take.mid"));
  EXPECT_TRUE(PathExists(Root() + "Recorded Songs/Keep/take_002.mid"));
  EXPECT_EQ(SongsOf(AlbumId("Recorded Songs/Keep")),
            (std::vector<std::string>{"Earlier|Recorded Songs/Keep/take.mid||SMF|r",
                                      "Take|Recorded Songs/Keep/take_002.mid||SMF|r"}));
  EXPECT_EQ(0, QueryInt(Db(), "SELECT COUNT(*) FROM song WHERE song_id=" + std::to_string(song)));
  EXPECT_EQ(0, QueryInt(Db(), "SELECT COUNT(*) FROM psong"));
}

TEST_F(CopySongTest, AMoveMakesTheKeepAlbumWhenItIsMissing) {
  MakeDirs(Root() + "Recorded Songs/Temporary Folder");
  WriteSongFile(Root() + "Recorded Songs/Temporary Folder/take.mid", "Take");
  Register("Recorded Songs");
  ASSERT_EQ(0, AlbumId("Recorded Songs/Keep"));
  ASSERT_EQ(kResultOk, Copy({SongId("Recorded Songs/Temporary Folder/take.mid")}, 0));
  EXPECT_TRUE(PathExists(Root() + "Recorded Songs/Keep/take.mid"));
  EXPECT_EQ("Keep|r", QueryRows(Db(),
                                "SELECT album_title,pfix FROM album WHERE "
                                "album_path='Recorded Songs/Keep'")
                          .at(0));
  EXPECT_EQ(1u, SongsOf(AlbumId("Recorded Songs/Keep")).size());
}

TEST_F(CopySongTest, AFailedMoveOfTheSecondFilePutsTheFirstBack) {
  MakeDirs(Root() + "Recorded Songs/Temporary Folder");
  MakeDirs(Root() + "Recorded Songs/Keep");
  WriteSongFile(Root() + "Recorded Songs/Temporary Folder/take.mid", "Take");
  WriteWavSong(Root() + "Recorded Songs/Temporary Folder/take.wav", 100);
  Register("Recorded Songs");
  const int song = SongId("Recorded Songs/Temporary Folder/take.mid");
  // The audio file vanished behind the catalogue's back.
  ::unlink((Root() + "Recorded Songs/Temporary Folder/take.wav").c_str());
  EXPECT_EQ(kResultWriteProtected, Copy({song}, 0));
  EXPECT_TRUE(PathExists(Root() + "Recorded Songs/Temporary Folder/take.mid"));
  EXPECT_FALSE(PathExists(Root() + "Recorded Songs/Keep/take.mid"));
  EXPECT_EQ(1, QueryInt(Db(), "SELECT COUNT(*) FROM song"));
}

TEST_F(CopySongTest, ASongWhoseFilesAreBothMissingStopsWith24AndWritesNothing) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  WriteSongFile(Root() + "Jazz/b.mid", "B");
  Register();
  ::unlink((Root() + "Jazz/a.mid").c_str());
  EXPECT_EQ(kResultNoFile, Copy({SongId("Jazz/a.mid"), SongId("Jazz/b.mid")}, AlbumId("Best")));
  EXPECT_TRUE(SongsOf(AlbumId("Best")).empty());
  EXPECT_FALSE(PathExists(Root() + "Best/a.mid"));
  EXPECT_FALSE(PathExists(Root() + "Best/b.mid"));
}

TEST_F(CopySongTest, AnUnknownSongStopsWith25AfterTheSongsBeforeIt) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  EXPECT_EQ(kResultNoData, Copy({SongId("Jazz/a.mid"), 4711}, AlbumId("Best")));
  EXPECT_EQ(1u, SongsOf(AlbumId("Best")).size());
}

TEST_F(CopySongTest, ARootWithoutCatalogueGives26) {
  std::list<int> ids{1};
  StdoutCapture quiet;
  EXPECT_EQ(kResultDbFail, FH_copy_song_usb(image_.Path("/nowhere/").c_str(), ids, 1));
}

TEST_F(CopySongTest, AnUnknownTargetAlbumGives29AndCopiesNothing) {
  MakeDirs(Root() + "Jazz");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  EXPECT_EQ(kResultCannotExecute, Copy({SongId("Jazz/a.mid")}, 99));
  EXPECT_EQ(1, QueryInt(Db(), "SELECT COUNT(*) FROM song"));
}

TEST_F(CopySongTest, AMissingAlbumDirectoryGives14) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  ::rmdir((Root() + "Best").c_str());
  EXPECT_EQ(kResultWriteProtected, Copy({SongId("Jazz/a.mid")}, AlbumId("Best")));
  EXPECT_TRUE(SongsOf(AlbumId("Best")).empty());
}

// Fills album albumId (prefix pfix) with count rows that have no files.
void AddRows(const std::string& db, int albumId, const char* pfix, int count) {
  ASSERT_TRUE(Execute(db, "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                              std::to_string(count) +
                              ") INSERT INTO song(pfix,song_title,midi_path,album_id,disp_order) "
                              "SELECT '" +
                              pfix + "','x','none/'||i||'.mid'," + std::to_string(albumId) +
                              ",i FROM n"));
}

TEST_F(CopySongTest, AFullAlbumGives27) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  AddRows(Db(), AlbumId("Best"), "s", kAlbumSongLimit - 1);
  EXPECT_EQ(kResultOk, Copy({SongId("Jazz/a.mid")}, AlbumId("Best")));
  EXPECT_EQ(kResultAlbumFull, Copy({SongId("Jazz/a.mid")}, AlbumId("Best")));
  EXPECT_EQ(kAlbumSongLimit, static_cast<int>(SongsOf(AlbumId("Best")).size()));
}

TEST_F(CopySongTest, AFullPrefixGives32) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  AddRows(Db(), 0, "s", kPrefixSongLimit - 1);
  EXPECT_EQ(kResultPrefixFull, Copy({SongId("Jazz/a.mid")}, AlbumId("Best")));
  EXPECT_TRUE(SongsOf(AlbumId("Best")).empty());
}

TEST_F(CopySongTest, ProgressIsPrintedAtEveryTwentiethSong) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  std::list<int> ids;
  for (int i = 0; i < 41; ++i) {
    WriteSongFile(Root() + "Jazz/s" + std::to_string(100 + i) + ".mid", "");
  }
  Register();
  for (int i = 0; i < 41; ++i) ids.push_back(SongId("Jazz/s" + std::to_string(100 + i) + ".mid"));
  ASSERT_EQ(kResultOk, Copy(ids, AlbumId("Best")));
  StdoutCapture expected;
  PrintCopyMessage(-1, 20, 41, true);
  PrintCopyMessage(-1, 40, 41, true);
  EXPECT_EQ(expected.Finish(), printed_);
  EXPECT_EQ(41u, SongsOf(AlbumId("Best")).size());
}

// The audio file of a song is replaced by a FIFO that a thread feeds: it
// writes some bytes, raises the cancel flag, then writes more, so that the
// copy of that file sees the flag before its next block.
class FeedingFifo {
 public:
  explicit FeedingFifo(const std::string& path) : path_(path) {
    ::unlink(path.c_str());
    ::mkfifo(path.c_str(), 0666);
    ::signal(SIGPIPE, SIG_IGN);
    thread_ = std::thread([this] {
      int fd = ::open(path_.c_str(), O_WRONLY);
      const std::string bytes(4096, 'x');
      if (::write(fd, bytes.data(), bytes.size()) < 0) return;
      SetCancelFlag();
      if (::write(fd, bytes.data(), bytes.size()) < 0) {
        // The reader stopped already.
      }
      ::close(fd);
    });
  }
  ~FeedingFifo() { thread_.join(); }

 private:
  std::string path_;
  std::thread thread_;
};

TEST_F(CopySongTest, ACancelledCopyGives31AndTheCatalogueMatchesTheCopiedFiles) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  WriteSongFile(Root() + "Jazz/b.mid", "B");
  WriteSongFile(Root() + "Jazz/c.mid", "C");
  WriteWavSong(Root() + "Jazz/c.wav", 100);
  WriteSongFile(Root() + "Jazz/d.mid", "D");
  Register();
  std::list<int> ids{SongId("Jazz/a.mid"), SongId("Jazz/b.mid"), SongId("Jazz/c.mid"),
                     SongId("Jazz/d.mid")};
  int result;
  {
    FeedingFifo fifo(Root() + "Jazz/c.wav");
    result = Copy(ids, AlbumId("Best"));
  }
  EXPECT_EQ(kResultCopyCancelled, result);
  EXPECT_EQ(SongsOf(AlbumId("Best")),
            (std::vector<std::string>{"A|Best/a.mid||SMF|s", "B|Best/b.mid||SMF|s"}));
  EXPECT_TRUE(PathExists(Root() + "Best/a.mid"));
  EXPECT_TRUE(PathExists(Root() + "Best/b.mid"));
  EXPECT_FALSE(PathExists(Root() + "Best/c.mid"));
  EXPECT_FALSE(PathExists(Root() + "Best/c.wav"));
  EXPECT_FALSE(PathExists(Root() + "Best/d.mid"));
}

// In a child: the album directory becomes a tmpfs of sizeKb in a private
// mount namespace, then the songs are copied into it.  Exit status: the
// negated result, or kChildSetupFailed.
int CopyIntoSmallFileSystem(const std::string& root, const std::string& albumDir, int albumId,
                            std::list<int> ids, int sizeKb) {
  return RunInChild([&] {
    if (::unshare(CLONE_NEWNS) != 0) return kChildSetupFailed;
    if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return kChildSetupFailed;
    const std::string options = "size=" + std::to_string(sizeKb) + "k";
    if (::mount("tmpfs", albumDir.c_str(), "tmpfs", 0, options.c_str()) != 0) {
      return kChildSetupFailed;
    }
    StdoutCapture quiet;
    int result = FH_copy_song_usb(root.c_str(), ids, albumId);
    // The files copied before the refusal are there.
    if (!PathExists(albumDir + "/a.wav") || !PathExists(albumDir + "/b.wav")) return 1;
    if (PathExists(albumDir + "/c.wav")) return 2;
    return -result;
  });
}

TEST_F(CopySongTest, ACopyRefusedForLackOfSpaceGives28AfterTheSongsBeforeIt) {
  MakeDirs(Root() + "Jazz");
  MakeDirs(Root() + "Best");
  // 1.3 MB of sound each; the file system holds 4 MiB, and each copy needs
  // its size and 1 MiB to spare: two fit, the third does not.
  for (const char* name : {"a", "b", "c"}) {
    WriteWavSong(Root() + "Jazz/" + name + ".wav", 162500);
  }
  Register();
  std::list<int> ids{SongId("Jazz/a.wav"), SongId("Jazz/b.wav"), SongId("Jazz/c.wav")};
  int status = CopyIntoSmallFileSystem(Root(), Root() + "Best", AlbumId("Best"), ids, 4096);
  if (status == kChildSetupFailed) GTEST_SKIP() << "no private mount namespace";
  EXPECT_EQ(-kResultNoSpace, status);
  EXPECT_EQ(SongsOf(AlbumId("Best")),
            (std::vector<std::string>{"a||Best/a.wav|WAV|s", "b||Best/b.wav|WAV|s"}));
}

TEST_F(CopySongTest, TheKeptStubsChangeNothing) {
  MakeDirs(Root() + "Jazz");
  WriteSongFile(Root() + "Jazz/a.mid", "A");
  Register();
  const std::vector<std::string> before = SongsOf(AlbumId("Jazz"));
  FH_copy_ulq_song(Root().c_str(), "Jazz/a.mid", "x", "y", 1, 2);
  FH_db_copy(Root().c_str(), Root().c_str());
  EXPECT_EQ(before, SongsOf(AlbumId("Jazz")));
  EXPECT_FALSE(PathExists(Root() + "x"));
}

}  // namespace
}  // namespace zansong_test

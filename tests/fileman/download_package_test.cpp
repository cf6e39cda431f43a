// From package to row: packages decoded by the library's decoders, filed,
// and kept by a later registration of "Downloaded Songs".
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "fileman/download_test_helpers.h"
#include "samplefiles/package_writer.h"
#include "zansong/fileman/register.h"
#include "zansong/storage/files.h"
#include "zansong/storage/package.h"

namespace zansong_test {
namespace {

class DownloadPackageTest : public DownloadTest {
 protected:
  // Writes a package carrying bytes as fileName and decodes it; the path of
  // the decoded file.
  std::string Decode(const std::string& fileName, const std::string& bytes) {
    const std::string package = downloads_ + fileName + ".xml";
    EXPECT_TRUE(samplefiles::WritePackage(package, fileName, bytes));
    char name[512] = "";
    char ack[256] = "";
    StdoutCapture capture;
    FM_ChangeB64ToBin2(package.c_str(), name, sizeof name, ack, sizeof ack);
    capture.Finish();
    EXPECT_EQ(downloads_ + fileName, name);
    EXPECT_EQ(bytes, ReadFile(name));
    return name;
  }
  static std::string Bytes(const std::function<void(const std::string&)>& write,
                           const std::string& scratch) {
    write(scratch);
    return ReadFile(scratch);
  }
};

TEST_F(DownloadPackageTest, DecodedPackagesAreFiledAndKeptByRegistration) {
  const std::string midiBytes =
      Bytes([](const std::string& p) { WriteSongFile(p, "Sonata", 8); }, root_ + "scratch.mid");
  const std::string wavBytes =
      Bytes([](const std::string& p) { WriteWavSong(p, 6000); }, root_ + "scratch.wav");
  DeleteFile((root_ + "scratch.mid").c_str());
  DeleteFile((root_ + "scratch.wav").c_str());

  DownloadRecord album = Record("Sonatas", "");
  Put(album.midiSource, Decode("sonata.mid", midiBytes));
  Put(album.audioSource, Decode("sonata.wav", wavBytes));
  Put(album.coverSource, Decode("sonatas.jpg", "\xFF\xD8\xFF\xE0 art"));
  Put(album.albumTitle, "Piano Sonatas");
  ASSERT_EQ(kResultOk, File(album));
  DownloadRecord single = Record("", "Encore");
  Put(single.midiSource, Decode("encore.mid", midiBytes));
  Put(single.coverSource, Decode("encore-art.jpg", "\xFF\xD8\xFF\xE0 encore"));
  ASSERT_EQ(kResultOk, File(single));

  const std::string rowsSql =
      "SELECT group_concat(song_id||':'||song_title||':'||format||':'||album_id||':'||"
      "coverart_path,',') FROM (SELECT * FROM song ORDER BY song_id)";
  const std::string rows = Text(rowsSql);
  EXPECT_EQ("1:Sonata:SMF,WAV:1:,2:Encore:SMF:2:Downloaded Songs/Single Songs/encore.jpg", rows);
  EXPECT_EQ(wavBytes, ReadFile(Area() + "Sonatas/sonata.wav"));
  ExecOn(Db(),
         "INSERT INTO playlist(ppfix,playlist_id,playlist_title,disp_order) VALUES('p',1,'Fav',1);"
         "INSERT INTO psong(ppfix,psong_id,playlist_id,pfix,song_id,disp_order) "
         "VALUES('p',1,1,'y',1,1),('p',2,1,'y',2,2)");

  StdoutCapture capture;
  EXPECT_EQ(0, FM_Add_AllSongs_ByCache(root_.c_str(), "Downloaded Songs", 0, 0, 0));
  capture.Finish();
  EXPECT_EQ(rows, Text(rowsSql));
  EXPECT_EQ("1,2", Text("SELECT group_concat(song_id,',') FROM (SELECT song_id FROM psong "
                        "ORDER BY disp_order)"));
  EXPECT_EQ(2, Int("SELECT COUNT(*) FROM album WHERE pfix='y'"));
}

}  // namespace
}  // namespace zansong_test

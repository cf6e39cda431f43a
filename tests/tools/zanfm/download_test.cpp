// zanfm download and downloaded: packages decoded, filed and listed, and
// the message line shown as the user reads it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "samplefiles/midi_writer.h"
#include "samplefiles/package_writer.h"
#include "samplefiles/wav_writer.h"
#include "support/catalogue_fixture.h"
#include "support/device_image.h"
#include "tools/zanfm/zanfm_runner.h"
#include "zanmsg.h"
#include "zansong/limits.h"

namespace zansong_test {
namespace {

class ZanfmDownloadTest : public ::testing::Test {
 protected:
  void SetUp() override {
    packages_ = image_.root() + "/packages/";
    MakeDirs(packages_);
    samplefiles::MidiTrack track;
    track.TrackName(0, "Pathetique").Tempo(0, 500000);
    track.NoteOn(0, 0, 60, 80).NoteOff(480 * 8, 0, 60).EndOfTrack();
    midi_ = samplefiles::BuildSmf(samplefiles::SmfOptions(), {track});
    samplefiles::WavSpec wav;
    wav.channels = 1;
    wav.sampleRate = 8000;
    wav.bitsPerSample = 8;
    wav.dataBytes = 8000 * 6;
    wav_ = samplefiles::BuildWav(wav);
  }

  // Writes a package carrying bytes as fileName; its path, quoted.
  std::string Package(const std::string& fileName, const std::string& bytes) {
    std::string path = packages_ + fileName + ".xml";
    EXPECT_TRUE(samplefiles::WritePackage(path, fileName, bytes));
    return "'" + path + "' ";
  }
  std::string Zanfm() { return ZanfmProgram() + " --root '" + image_.root() + "' "; }
  std::string Db(const std::string& usb = "") {
    return usb.empty() ? image_.SongRoot() + ".zansong.db" : image_.UsbRoot(usb) + ".zansong.db";
  }

  DeviceImage image_;
  std::string packages_;
  std::string midi_;
  std::string wav_;
};

TEST_F(ZanfmDownloadTest, PackagesAreDecodedFiledAndListed) {
  std::string out;
  ASSERT_EQ(0, RunCommand(Zanfm() + "download " + Package("pathetique.mid", midi_) +
                              Package("pathetique.wav", wav_) + Package("art.jpg", "\xFF\xD8 art") +
                              "--album-dir sonatas --album-title 'Piano Sonatas' "
                              "--composer Beethoven --genre Classical --purchased 2026-11-20",
                          &out))
      << out;
  EXPECT_NE(std::string::npos, out.find("Filed into Downloaded Songs/sonatas")) << out;
  EXPECT_EQ("Pathetique|SMF,WAV|6000|Beethoven|2026-11-20",
            TextOn(Db(),
                   "SELECT song_title||'|'||format||'|'||length||'|'||composer||'|'||"
                   "purchased_date FROM song"));
  EXPECT_EQ("\xFF\xD8 art", ReadFile(image_.SongRoot() + "Downloaded Songs/sonatas/zanalbum.jpg"));
  // The package files stay; the download folder is gone.
  EXPECT_TRUE(PathExists(packages_ + "pathetique.mid.xml"));
  for (const auto& e : std::filesystem::directory_iterator(image_.root() + "/tmp")) {
    EXPECT_EQ(std::string::npos, e.path().string().find("zanfm-download")) << e.path();
  }

  ASSERT_EQ(0, RunCommand(Zanfm() + "downloaded --json", &out)) << out;
  EXPECT_NE(std::string::npos, out.find("\"title\": \"Piano Sonatas\"")) << out;
  EXPECT_NE(std::string::npos, out.find("\"path\": \"Downloaded Songs/sonatas/pathetique.mid\""))
      << out;
  ASSERT_EQ(0, RunCommand(Zanfm() + "downloaded", &out)) << out;
  EXPECT_NE(std::string::npos, out.find("Piano Sonatas  (Downloaded Songs/sonatas)")) << out;
}

TEST_F(ZanfmDownloadTest, SingleSongGoesToTheStickGiven) {
  std::string out;
  image_.UsbRoot("sdb1");
  ASSERT_EQ(0, RunCommand(Zanfm() + "download " + Package("encore.mid", midi_) +
                              "--title Encore --usb sdb1",
                          &out))
      << out;
  EXPECT_EQ("Encore|Downloaded Songs/Single Songs/encore.mid",
            TextOn(Db("sdb1"), "SELECT song_title||'|'||midi_path FROM song"));
  ASSERT_EQ(0, RunCommand(Zanfm() + "downloaded --usb sdb1", &out)) << out;
  EXPECT_NE(std::string::npos, out.find("Encore")) << out;
}

TEST_F(ZanfmDownloadTest, RefusalShowsItsMessageAndExitsNonZero) {
  std::string out;
  EXPECT_EQ(1,
            RunCommand(Zanfm() + "download " + Package("x.mid", midi_) + "--album-dir ..", &out));
  EXPECT_NE(std::string::npos, out.find(std::string(msg_getXmlMsg("MSG_COMMON_DOWNLOAD")) + ": " +
                                        msg_getXmlMsg("MSG_FILEMAN_CANNOT_EXECUTE_ERROR")))
      << out;

  CreateCatalogue(image_, Db());
  ExecOn(Db(), "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                   std::to_string(kAlbumLimit) +
                   ") INSERT INTO album(pfix,album_id,album_title,album_path,disp_order) "
                   "SELECT 'y',i,'A'||i,'Downloaded Songs/A'||i,i FROM n");
  EXPECT_EQ(1,
            RunCommand(Zanfm() + "download " + Package("x.mid", midi_) + "--album-dir New", &out));
  EXPECT_NE(std::string::npos, out.find(std::string(msg_getXmlMsg("MSG_COMMON_ERROR")) + ": " +
                                        msg_getXmlMsg("MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS")))
      << out;
  EXPECT_EQ(1, RunCommand(Zanfm() + "--xml download " + Package("x.mid", midi_) + "--album-dir New",
                          &out));
  EXPECT_NE(std::string::npos, out.find("<set_msgbox type=\"exclusive\"")) << out;

  EXPECT_EQ(1, RunCommand(Zanfm() + "download '" + packages_ + "missing.xml'", &out));
  EXPECT_NE(std::string::npos, out.find("cannot decode")) << out;
}

TEST_F(ZanfmDownloadTest, DemoFilesAnAlbumSongAndASingleSong) {
  std::string out;
  ASSERT_EQ(0, RunCommand(ZanfmProgram() + " demo '" + image_.root() + "/demo'", &out)) << out;
  EXPECT_NE(std::string::npos, out.find("Piano Sonatas  (Downloaded Songs/sonatas-0001)")) << out;
  EXPECT_NE(std::string::npos, out.find("Moonlight Sonata (download)  SMF,WAV")) << out;
  EXPECT_NE(std::string::npos, out.find("Encore  SMF")) << out;
  EXPECT_NE(std::string::npos, out.find("Downloaded Songs/Single Songs/encore.mid")) << out;
}

}  // namespace
}  // namespace zansong_test

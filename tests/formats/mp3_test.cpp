// MPEG audio: frame header fields, the ID3 version 1 tag, and playing times
// from every bitrate of the standard tables.
#include <string>

#include "samplefiles/mp3_writer.h"
#include "support/device_image.h"
#include "zansong/formats/audio.h"

namespace zansong_test {

using samplefiles::BuildMp3;
using samplefiles::Id3v1Tag;
using samplefiles::Mp3Frame;

namespace {

// The bitrate tables of the MPEG audio standards, kbit/s for index 1-14.
const int kMpeg1Layer1[14] = {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
const int kMpeg1Layer2[14] = {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
const int kMpeg1Layer3[14] = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
const int kMpeg2Layer1[14] = {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
const int kMpeg2Layer23[14] = {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

class Mp3Test : public DeviceTest {
 protected:
  std::string Put(const std::string& bytes, const std::string& name = "song.mp3") {
    std::string path = image_.SongRoot() + name;
    WriteFile(path, bytes);
    return path;
  }
};

TEST(MakePlayTimeTest, EveryBitrateOfEveryLayerAndVersion) {
  struct Table {
    uint32_t version;
    uint32_t layerCode;
    const int* kbps;
  };
  const Table tables[] = {
      {1, 3, kMpeg1Layer1}, {1, 2, kMpeg1Layer2},  {1, 1, kMpeg1Layer3},
      {0, 3, kMpeg2Layer1}, {0, 2, kMpeg2Layer23}, {0, 1, kMpeg2Layer23},
  };
  const int fileSize = 12345678;
  for (const Table& table : tables) {
    for (uint32_t index = 1; index <= 14; ++index) {
      MP3INF info{table.version, table.layerCode, index, 0};
      EXPECT_EQ(MakePlayTime(fileSize, &info), fileSize / (table.kbps[index - 1] / 8))
          << table.version << " " << table.layerCode << " " << index;
    }
  }
}

TEST(MakePlayTimeTest, Layer3At128KbitsAnd16000BytesIsOneSecond) {
  MP3INF info{1, 1, 9, 0};
  EXPECT_EQ(MakePlayTime(16000, &info), 1000);
}

TEST(MakePlayTimeTest, IndexesWithoutABitrateGiveZero) {
  MP3INF free{1, 1, 0, 0};
  EXPECT_EQ(MakePlayTime(16000, &free), 0);
  MP3INF bad{1, 1, 15, 0};
  EXPECT_EQ(MakePlayTime(16000, &bad), 0);
  MP3INF reservedLayer{1, 0, 9, 0};
  EXPECT_EQ(MakePlayTime(16000, &reservedLayer), 0);
  EXPECT_EQ(MakePlayTime(16000, nullptr), 0);
}

TEST_F(Mp3Test, HeaderFieldsAndTag) {
  Mp3Frame frame;
  frame.mpeg1 = false;
  frame.layer = 2;
  frame.bitrateIndex = 11;
  frame.sampleRateIndex = 1;
  frame.padding = true;
  Id3v1Tag tag{"Title of the song", "Artist", "Album", "1999", "A comment", 7};
  std::string path = Put(BuildMp3(frame, 5000, &tag));
  ID3TAG id3;
  MP3INF info;
  ASSERT_EQ(ReadFileDataMp3(path.c_str(), &id3, &info), 0);
  EXPECT_EQ(info.version, 0u);
  EXPECT_EQ(info.layer, 2u);
  EXPECT_EQ(info.bitrate, 11u);
  EXPECT_EQ(info.samplerate, 1u);
  EXPECT_STREQ(id3.title, "Title of the song");
  EXPECT_STREQ(id3.artist, "Artist");
  EXPECT_STREQ(id3.album, "Album");
  EXPECT_STREQ(id3.year, "1999");
  EXPECT_STREQ(id3.comment, "A comment");
  EXPECT_EQ(id3.genre, 7);
  // 112 kbit/s is 14 bytes a millisecond.
  EXPECT_EQ(MakePlayTime(5000 + 128, &info), 5128 / 14);
}

TEST_F(Mp3Test, FullLengthTagFieldsAreTerminated) {
  Id3v1Tag tag{std::string(30, 'T'), std::string(30, 'A'),
               std::string(30, 'L'), "20245",
               std::string(30, 'C'), 255};
  std::string path = Put(BuildMp3(Mp3Frame{}, 1000, &tag));
  ID3TAG id3;
  MP3INF info;
  ASSERT_EQ(ReadFileDataMp3(path.c_str(), &id3, &info), 0);
  EXPECT_EQ(std::string(id3.title), std::string(30, 'T'));
  EXPECT_EQ(std::string(id3.artist), std::string(30, 'A'));
  EXPECT_EQ(std::string(id3.album), std::string(30, 'L'));
  EXPECT_STREQ(id3.year, "2024");
  EXPECT_EQ(std::string(id3.comment), std::string(30, 'C'));
  EXPECT_EQ(id3.genre, 255);
}

TEST_F(Mp3Test, FileWithoutTagReportsItsPath) {
  std::string path =
      Put(BuildMp3(Mp3Frame{}, 4000, nullptr), "a-rather-long-file-name-for-a-song.mp3");
  ASSERT_GT(path.size(), 30u);
  ID3TAG id3;
  MP3INF info;
  ASSERT_EQ(ReadFileDataMp3(path.c_str(), &id3, &info), 0);
  EXPECT_EQ(std::string(id3.title), path.substr(0, 30));
  EXPECT_STREQ(id3.artist, "-?-");
  EXPECT_STREQ(id3.album, "-?-");
  EXPECT_STREQ(id3.comment, "-?-");
  EXPECT_STREQ(id3.year, "0000");
  EXPECT_EQ(id3.genre, 48);
  EXPECT_EQ(info.version, 1u);
  EXPECT_EQ(info.layer, 1u);
  EXPECT_EQ(info.bitrate, 9u);
}

TEST_F(Mp3Test, FileShorterThanATagFails) {
  ID3TAG id3;
  MP3INF info;
  EXPECT_EQ(ReadFileDataMp3(Put(std::string(127, '\0')).c_str(), &id3, &info), -1);
  EXPECT_EQ(ReadFileDataMp3(Put(std::string(128, '\0')).c_str(), &id3, &info), 0);
  EXPECT_EQ(ReadFileDataMp3((image_.SongRoot() + "missing.mp3").c_str(), &id3, &info), -1);
  EXPECT_EQ(ReadFileDataMp3(nullptr, &id3, &info), -1);
}

TEST_F(Mp3Test, FirstBytesAreTakenAsTheHeaderWhateverTheyAre) {
  // An ID3 version 2 tag at the start is not skipped.
  std::string path = Put("ID3\x03" + std::string(200, '\0'));
  ID3TAG id3;
  MP3INF info;
  ASSERT_EQ(ReadFileDataMp3(path.c_str(), &id3, &info), 0);
  EXPECT_EQ(info.version, 0u);  // 'D' = 0x44
  EXPECT_EQ(info.layer, 2u);
  EXPECT_EQ(info.bitrate, 3u);  // '3' = 0x33
  EXPECT_EQ(info.samplerate, 0u);
}

TEST_F(Mp3Test, GetFileSize) {
  std::string path = Put(std::string(12345, 'x'));
  EXPECT_EQ(GetFileSize(path.c_str()), 12345);
  EXPECT_EQ(GetFileSize((image_.SongRoot() + "missing.mp3").c_str()), 0);
  EXPECT_EQ(GetFileSize(nullptr), 0);
}

TEST_F(Mp3Test, GetFileSizeAboveTwoAndFourGibibytes) {
  const std::string path = image_.SongRoot() + "big.mp3";
  for (long long size : {(1LL << 31) + 1, (1LL << 32) + 3, 5LL << 30}) {
    ASSERT_TRUE(MakeSparseFile(path, size));
    EXPECT_EQ(GetFileSize(path.c_str()), size);
  }
}

TEST_F(Mp3Test, PlayTimeOfAGeneratedFile) {
  Mp3Frame frame;  // MPEG-1 Layer III, 128 kbit/s
  std::string path = Put(BuildMp3(frame, 160000, nullptr));
  ID3TAG id3;
  MP3INF info;
  ASSERT_EQ(ReadFileDataMp3(path.c_str(), &id3, &info), 0);
  EXPECT_EQ(MakePlayTime(static_cast<int>(GetFileSize(path.c_str())), &info), 10000);
}

}  // namespace
}  // namespace zansong_test

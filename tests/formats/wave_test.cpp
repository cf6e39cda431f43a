// Playing times of WAV files and GetAudioTime's choice by extension.
#include <string>

#include "samplefiles/wav_writer.h"
#include "support/device_image.h"
#include "zansong/formats/audio.h"

namespace zansong_test {

using samplefiles::BuildWav;
using samplefiles::ListInfoChunk;
using samplefiles::WavChunk;
using samplefiles::WavSpec;
using samplefiles::WriteWavFile;

namespace {

class WaveTest : public DeviceTest {
 protected:
  std::string Put(const WavSpec& wav, const std::string& name = "song.wav") {
    std::string path = image_.SongRoot() + name;
    EXPECT_TRUE(WriteWavFile(path, wav));
    return path;
  }
  int64_t Time(const WavSpec& wav) {
    TWaveData wave;
    return wave.LoadFromFile(Put(wav).c_str());
  }
};

TEST_F(WaveTest, SixteenBitStereoSecond) {
  WavSpec wav;
  wav.dataBytes = 176400;
  TWaveData wave;
  EXPECT_EQ(wave.LoadFromFile(Put(wav).c_str()), 1000);
  EXPECT_EQ(wave.GetChannels(), 2);
  EXPECT_EQ(wave.GetSampleRate(), 44100);
  EXPECT_EQ(wave.GetBitsPerSample(), 16);
  EXPECT_EQ(wave.GetDataSize(), 176400);
}

TEST_F(WaveTest, EightBitMono) {
  WavSpec wav;
  wav.channels = 1;
  wav.bitsPerSample = 8;
  wav.sampleRate = 22050;
  wav.dataBytes = 33075;  // 1.5 s
  EXPECT_EQ(Time(wav), 1500);
}

TEST_F(WaveTest, DivisionsAreIntegerSteps) {
  // ((1001 / 2) / 2) * 1000 / 8000 = (250 * 1000) / 8000 = 31.
  WavSpec wav;
  wav.sampleRate = 8000;
  wav.dataBytes = 1001;
  EXPECT_EQ(Time(wav), 31);
}

TEST_F(WaveTest, ListChunkBeforeFmt) {
  WavSpec wav;
  wav.dataBytes = 88200;
  wav.chunksBeforeFmt.push_back(ListInfoChunk("A recording"));
  wav.chunksAfterFmt.push_back(WavChunk{"fact", std::string(4, '\x01')});
  EXPECT_EQ(Time(wav), 500);
}

TEST_F(WaveTest, FmtChunkSizes) {
  for (int size : {16, 18, 40}) {
    WavSpec wav;
    wav.fmtSize = size;
    wav.channels = 1;
    wav.sampleRate = 48000;
    wav.dataBytes = 96000;
    wav.chunksAfterFmt.push_back(WavChunk{"junk", "xy"});
    EXPECT_EQ(Time(wav), 1000) << size;
  }
}

TEST_F(WaveTest, FmtExtensionIsSkippedByItsOwnSizeField) {
  // A 20-byte fmt chunk that says it has 0 extra bytes: the two bytes left
  // over are read as the start of the next chunk header, so the data chunk
  // is not found.
  WavSpec wav;
  wav.fmtSize = 20;
  wav.extraSize = 0;
  wav.dataBytes = 176400;
  EXPECT_EQ(Time(wav), 0);
  wav.extraSize = 2;
  EXPECT_EQ(Time(wav), 1000);
}

TEST_F(WaveTest, NoDataChunkGivesZero) {
  WavSpec wav;
  wav.withData = false;
  wav.chunksAfterFmt.push_back(ListInfoChunk("no data"));
  EXPECT_EQ(Time(wav), 0);
}

TEST_F(WaveTest, NoFmtChunkUsesTheDefaults) {
  WavSpec wav;
  wav.withFmt = false;
  wav.dataBytes = 22050;  // 2 channels, 8 bits, 11025 Hz: 1 s
  EXPECT_EQ(Time(wav), 1000);
}

TEST_F(WaveTest, DataSizeFieldIsUsedAsIs) {
  WavSpec wav;
  wav.dataBytes = 10;
  wav.dataSizeField = 352800;
  EXPECT_EQ(Time(wav), 2000);
  wav.dataSizeField = 0xFFFFFFFFLL;  // a size beyond 2 GiB still counts up
  EXPECT_EQ(Time(wav), 0xFFFFFFFFLL / 4 * 1000 / 44100);
}

TEST_F(WaveTest, FormatsThatGiveNoTimeGiveZero) {
  WavSpec wav;
  wav.dataBytes = 1000;
  wav.channels = 0;
  EXPECT_EQ(Time(wav), 0);
  wav.channels = 2;
  wav.bitsPerSample = 4;
  EXPECT_EQ(Time(wav), 0);
  wav.bitsPerSample = 16;
  wav.sampleRate = 0;
  EXPECT_EQ(Time(wav), 0);
  wav.sampleRate = 0x80000000u;
  EXPECT_EQ(Time(wav), 0);
}

TEST_F(WaveTest, ShortFmtChunkReadsMissingFieldsAsZero) {
  WavSpec wav;
  wav.fmtSize = 10;  // no bits-per-sample field
  wav.dataBytes = 1000;
  EXPECT_EQ(Time(wav), 0);
}

TEST_F(WaveTest, NotRiffWaveGivesZero) {
  std::string bytes = BuildWav(WavSpec{});
  std::string path = image_.SongRoot() + "bad.wav";
  TWaveData wave;
  WriteFile(path, "RIFX" + bytes.substr(4));
  EXPECT_EQ(wave.LoadFromFile(path.c_str()), 0);
  WriteFile(path, bytes.substr(0, 8) + "WAVX" + bytes.substr(12));
  EXPECT_EQ(wave.LoadFromFile(path.c_str()), 0);
  WriteFile(path, "RIFF");
  EXPECT_EQ(wave.LoadFromFile(path.c_str()), 0);
  EXPECT_EQ(wave.LoadFromFile((image_.SongRoot() + "missing.wav").c_str()), 0);
  EXPECT_EQ(wave.LoadFromFile(nullptr), 0);
}

TEST_F(WaveTest, TruncatedFilesGiveZeroOrTheirTime) {
  WavSpec wav;
  wav.fmtSize = 40;
  wav.dataBytes = 4000;
  wav.chunksBeforeFmt.push_back(ListInfoChunk("cut"));
  std::string bytes = BuildWav(wav);
  std::string path = image_.SongRoot() + "cut.wav";
  for (size_t n = 0; n <= bytes.size(); ++n) {
    WriteFile(path, bytes.substr(0, n));
    TWaveData wave;
    int64_t t = wave.LoadFromFile(path.c_str());
    // The time comes from the data chunk's size field once it is there.
    EXPECT_TRUE(t == 0 || t == 22) << n;
  }
}

TEST_F(WaveTest, ClearZeroesOnlyTheDataSize) {
  WavSpec wav;
  wav.channels = 1;
  wav.dataBytes = 100;
  TWaveData wave;
  wave.LoadFromFile(Put(wav).c_str());
  wave.Clear();
  EXPECT_EQ(wave.GetDataSize(), 0);
  EXPECT_EQ(wave.GetChannels(), 1);
  EXPECT_EQ(wave.SaveToFile(TSString("x")), 0);
}

TEST_F(WaveTest, GetAudioTimeTimesOnlyWavFiles) {
  WavSpec wav;
  wav.dataBytes = 176400;
  EXPECT_EQ(GetAudioTime(Put(wav, "song.wav").c_str()), 1000u);
  EXPECT_EQ(GetAudioTime(Put(wav, "SONG.WAV").c_str()), 1000u);
  EXPECT_EQ(GetAudioTime(Put(wav, "Mixed.WaV").c_str()), 1000u);
  // The same bytes under other names are not timed.
  EXPECT_EQ(GetAudioTime(Put(wav, "song.mp3").c_str()), 0u);
  EXPECT_EQ(GetAudioTime(Put(wav, "SONG.MP3").c_str()), 0u);
  EXPECT_EQ(GetAudioTime(Put(wav, "song.mid").c_str()), 0u);
  EXPECT_EQ(GetAudioTime(Put(wav, "song").c_str()), 0u);
  EXPECT_EQ(GetAudioTime((image_.SongRoot() + "missing.wav").c_str()), 0u);
  EXPECT_EQ(GetAudioTime(nullptr), 0u);
}

}  // namespace
}  // namespace zansong_test

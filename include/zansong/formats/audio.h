// Playing times and tags of audio songs (WAV and MP3 files).
//
// GetAudioTime(path): the playing time in milliseconds of a ".WAV" file
//   (extension in any case) from TWaveData::LoadFromFile; 0 for ".MP3" and
//   any other extension, and for a file that cannot be read.
// TWaveData::LoadFromFile(path): reads the "fmt " and "data" chunks of a
//   RIFF/WAVE file and returns ((data bytes / channels) / (bits / 8)) x 1000
//   / sample rate in whole milliseconds; 0 when the file cannot be opened,
//   is not RIFF/WAVE, has no "data" chunk, or its format gives no time (0
//   channels, fewer than 8 bits a sample, a sample rate of 0).  Without a
//   "fmt " chunk the last values set are used (initially 2 channels,
//   11025 Hz, 8 bits).
// ReadFileDataMp3(path, tag, info): info := the fields of the frame header
//   in the first 4 bytes; tag := the ID3 version 1 tag of the last 128
//   bytes, or when there is none the path (cut to 30 bytes) as title, "-?-"
//   as artist, album and comment, "0000" as year and genre 48.  0 on
//   success, -1 when the file cannot be opened or is shorter than 128 bytes.
// MakePlayTime(fileSize, info): fileSize / (bitrate in kbit/s / 8) from the
//   standard MPEG audio bitrate tables; 0 for bitrate index 0 or above 14
//   and for layer code 0.
// GetFileSize(path): the size from stat, all 64 bits (a file above 2 GiB
//   reads as its size, on 32-bit processors too); 0 when stat fails.
#ifndef ZANSONG_FORMATS_AUDIO_H_
#define ZANSONG_FORMATS_AUDIO_H_

#include <cstdint>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

class ZANSONG_EXPORT TWaveData {
 public:
  TWaveData() = default;

  // Zeroes the reserved word and the data size.
  void Clear() {
    reserved_ = 0;
    dataSize_ = 0;
  }
  int64_t LoadFromFile(const char* path);
  // Kept for callers; writes nothing and returns 0.
  int SaveToFile(TSString path);

  int32_t GetDataSize() const { return dataSize_; }
  int32_t GetChannels() const { return channels_; }
  int32_t GetSampleRate() const { return sampleRate_; }
  int32_t GetBitsPerSample() const { return bitsPerSample_; }

 private:
  int32_t reserved_ = 0;
  int32_t dataSize_ = 0;
  int32_t channels_ = 2;
  int32_t sampleRate_ = 11025;
  int32_t bitsPerSample_ = 8;
};

// Fields of an MPEG audio frame header.
struct MP3INF {
  uint32_t version;     // 1 MPEG-1, 0 MPEG-2 low sampling frequency
  uint32_t layer;       // 1 Layer III, 2 Layer II, 3 Layer I, 0 reserved
  uint32_t bitrate;     // bitrate index 0-15
  uint32_t samplerate;  // sampling-rate index 0-3
};

// An ID3 version 1 tag, each text NUL-terminated.
struct ID3TAG {
  char title[31];
  char artist[31];
  char album[31];
  char year[5];
  char comment[31];
  uint8_t genre;
};

ZANSONG_EXPORT uint32_t GetAudioTime(const char* path);
ZANSONG_EXPORT int ReadFileDataMp3(const char* path, ID3TAG* tag, MP3INF* info);
ZANSONG_EXPORT int MakePlayTime(int fileSize, MP3INF* info);
ZANSONG_EXPORT int64_t GetFileSize(const char* path);

#endif  // ZANSONG_FORMATS_AUDIO_H_

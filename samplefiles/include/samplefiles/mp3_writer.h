// Writer of MPEG audio files, built in memory.
//
// Mp3FrameHeader(frame) returns the 4-byte frame header: sync 0xFFE, version
// bits 11 (MPEG-1) or 10 (MPEG-2 low sampling frequency), the layer code
// (Layer I = 3, II = 2, III = 1), no CRC, the bitrate index (0-15), the
// sample-rate index (0-3), the padding bit, stereo mode.  Any field value is
// written as given, so callers can build invalid headers.
//
// Mp3FrameLength(frame) is the frame's length in bytes from the standard
// bitrate and sampling-rate tables (0 for a free, invalid or reserved index).
//
// BuildMp3(frame, audioBytes, tag) repeats frames (header + zero bytes) until
// exactly audioBytes bytes are written (the last frame is cut short; a frame
// whose length is 0 is written as a header alone repeatedly), then appends the
// 128-byte ID3 version 1 tag when tag is not null.
//
// Id3v1TagBytes(tag): "TAG", title[30], artist[30], album[30], year[4],
// comment[30] (each NUL-padded or cut), genre byte.
//
// WriteMp3File() saves BuildMp3(...) to path; true on success.
#ifndef ZANSONG_SAMPLEFILES_MP3_WRITER_H_
#define ZANSONG_SAMPLEFILES_MP3_WRITER_H_

#include <cstdint>
#include <string>

namespace samplefiles {

struct Mp3Frame {
  bool mpeg1 = true;     // false: MPEG-2 low sampling frequency
  int layer = 3;         // 1, 2 or 3 (Layer I, II, III)
  int bitrateIndex = 9;  // 0-15
  int sampleRateIndex = 0;
  bool padding = false;
};

struct Id3v1Tag {
  std::string title;
  std::string artist;
  std::string album;
  std::string year;
  std::string comment;
  uint8_t genre = 0;
};

std::string Mp3FrameHeader(const Mp3Frame& frame);
// Bitrate in kbit/s from the standard tables, 0 for index 0, 15 or bad layer.
int Mp3BitrateKbps(const Mp3Frame& frame);
int Mp3FrameLength(const Mp3Frame& frame);
std::string Id3v1TagBytes(const Id3v1Tag& tag);
std::string BuildMp3(const Mp3Frame& frame, size_t audioBytes, const Id3v1Tag* tag);
bool WriteMp3File(const std::string& path, const Mp3Frame& frame, size_t audioBytes,
                  const Id3v1Tag* tag);

}  // namespace samplefiles

#endif  // ZANSONG_SAMPLEFILES_MP3_WRITER_H_

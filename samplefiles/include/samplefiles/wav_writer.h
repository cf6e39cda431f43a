// Writer of RIFF/WAVE files, built in memory.
//
// BuildWav(wav) returns "RIFF" <size> "WAVE", then the chunks in this order:
// wav.chunksBeforeFmt, the "fmt " chunk (when wav.withFmt), wav.chunksAfterFmt,
// the "data" chunk (when wav.withData) and wav.chunksAfterData.  Each chunk
// is its 4-character identifier, a 32-bit little-endian size and its body;
// bodies of odd size get no pad byte unless the caller puts one in the body.
//
// The "fmt " chunk has wav.fmtSize bytes (16, 18 or 40 in practice): format
// tag 1 (PCM; 0xFFFE for size 40), channels, sample rate, byte rate, block
// align, bits per sample; from size 18 on, the 16-bit extra-size field
// (wav.extraSize, or fmtSize - 18 when negative) and zero bytes to fill the
// size.  The data chunk holds wav.dataBytes bytes of a repeating pattern;
// its size field is wav.dataSizeField when set (>= 0), else dataBytes.
// Nothing is validated: channel count 0 or bit depth 4 are written as given.
//
// WriteWavFile() saves BuildWav(wav) to path; true on success.
#ifndef ZANSONG_SAMPLEFILES_WAV_WRITER_H_
#define ZANSONG_SAMPLEFILES_WAV_WRITER_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace samplefiles {

struct WavChunk {
  std::string id;    // 4 characters
  std::string body;  // size field = body.size()
};

struct WavSpec {
  int channels = 2;
  uint32_t sampleRate = 44100;
  int bitsPerSample = 16;
  int fmtSize = 16;
  int extraSize = -1;
  bool withFmt = true;
  bool withData = true;
  uint32_t dataBytes = 0;
  int64_t dataSizeField = -1;
  std::vector<WavChunk> chunksBeforeFmt;
  std::vector<WavChunk> chunksAfterFmt;
  std::vector<WavChunk> chunksAfterData;
};

// One chunk: id, little-endian size of body, body.
std::string WavChunkBytes(const WavChunk& chunk);
// A "LIST" chunk holding an "INFO" list with one "INAM" entry of text.
WavChunk ListInfoChunk(const std::string& text);
std::string BuildWav(const WavSpec& wav);
bool WriteWavFile(const std::string& path, const WavSpec& wav);

}  // namespace samplefiles

#endif  // ZANSONG_SAMPLEFILES_WAV_WRITER_H_

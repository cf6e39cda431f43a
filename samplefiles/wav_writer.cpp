#include "samplefiles/wav_writer.h"

#include "samplefiles/midi_writer.h"

namespace samplefiles {

std::string WavChunkBytes(const WavChunk& chunk) {
  return chunk.id + Le32(static_cast<uint32_t>(chunk.body.size())) + chunk.body;
}

WavChunk ListInfoChunk(const std::string& text) {
  std::string name = text + '\0';
  if (name.size() % 2 != 0) name += '\0';
  return WavChunk{"LIST",
                  "INFO" + std::string("INAM") + Le32(static_cast<uint32_t>(name.size())) + name};
}

static std::string FmtBody(const WavSpec& wav) {
  uint32_t blockAlign = static_cast<uint32_t>(wav.channels * wav.bitsPerSample / 8);
  std::string body = Le16(wav.fmtSize >= 40 ? 0xFFFE : 1) +
                     Le16(static_cast<uint32_t>(wav.channels)) + Le32(wav.sampleRate) +
                     Le32(wav.sampleRate * blockAlign) + Le16(blockAlign) +
                     Le16(static_cast<uint32_t>(wav.bitsPerSample));
  if (wav.fmtSize >= 18) {
    int extra = wav.extraSize >= 0 ? wav.extraSize : wav.fmtSize - 18;
    body += Le16(static_cast<uint32_t>(extra));
  }
  if (static_cast<int>(body.size()) < wav.fmtSize) {
    body.append(static_cast<size_t>(wav.fmtSize) - body.size(), '\0');
  } else {
    body.resize(static_cast<size_t>(wav.fmtSize));
  }
  return body;
}

std::string BuildWav(const WavSpec& wav) {
  std::string chunks;
  for (const WavChunk& c : wav.chunksBeforeFmt) chunks += WavChunkBytes(c);
  if (wav.withFmt) chunks += WavChunkBytes(WavChunk{"fmt ", FmtBody(wav)});
  for (const WavChunk& c : wav.chunksAfterFmt) chunks += WavChunkBytes(c);
  if (wav.withData) {
    uint32_t sizeField =
        wav.dataSizeField >= 0 ? static_cast<uint32_t>(wav.dataSizeField) : wav.dataBytes;
    chunks += "data" + Le32(sizeField);
    std::string samples(wav.dataBytes, '\0');
    for (uint32_t i = 0; i < wav.dataBytes; ++i) samples[i] = static_cast<char>(i * 7 + 3);
    chunks += samples;
  }
  for (const WavChunk& c : wav.chunksAfterData) chunks += WavChunkBytes(c);
  return "RIFF" + Le32(static_cast<uint32_t>(chunks.size() + 4)) + "WAVE" + chunks;
}

bool WriteWavFile(const std::string& path, const WavSpec& wav) {
  return SaveBytes(path, BuildWav(wav));
}

}  // namespace samplefiles

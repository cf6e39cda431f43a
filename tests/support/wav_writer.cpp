#include "support/wav_writer.h"

#include "support/midi_writer.h"

namespace zansong_test {

std::string WavChunkBytes(const WavChunk& chunk) {
  return chunk.id + Le32(static_cast<uint32_t>(chunk.body.size())) + chunk.body;
}

WavChunk ListInfoChunk(const std::string& text) {
  std::string name = text + '\0';
  if (name.size() % 2 != 0) name += '\0';
  return WavChunk{"LIST",
                  "INFO" + std::string("INAM") + Le32(static_cast<uint32_t>(name.size())) + name};
}

static std::string FmtBody(const WavSpec& spec) {
  uint32_t blockAlign = static_cast<uint32_t>(spec.channels * spec.bitsPerSample / 8);
  std::string body = Le16(spec.fmtSize >= 40 ? 0xFFFE : 1) +
                     Le16(static_cast<uint32_t>(spec.channels)) + Le32(spec.sampleRate) +
                     Le32(spec.sampleRate * blockAlign) + Le16(blockAlign) +
                     Le16(static_cast<uint32_t>(spec.bitsPerSample));
  if (spec.fmtSize >= 18) {
    int extra = spec.extraSize >= 0 ? spec.extraSize : spec.fmtSize - 18;
    body += Le16(static_cast<uint32_t>(extra));
  }
  if (static_cast<int>(body.size()) < spec.fmtSize) {
    body.append(static_cast<size_t>(spec.fmtSize) - body.size(), '\0');
  } else {
    body.resize(static_cast<size_t>(spec.fmtSize));
  }
  return body;
}

std::string BuildWav(const WavSpec& spec) {
  std::string chunks;
  for (const WavChunk& c : spec.chunksBeforeFmt) chunks += WavChunkBytes(c);
  if (spec.withFmt) chunks += WavChunkBytes(WavChunk{"fmt ", FmtBody(spec)});
  for (const WavChunk& c : spec.chunksAfterFmt) chunks += WavChunkBytes(c);
  if (spec.withData) {
    uint32_t sizeField =
        spec.dataSizeField >= 0 ? static_cast<uint32_t>(spec.dataSizeField) : spec.dataBytes;
    chunks += "data" + Le32(sizeField);
    std::string samples(spec.dataBytes, '\0');
    for (uint32_t i = 0; i < spec.dataBytes; ++i) samples[i] = static_cast<char>(i * 7 + 3);
    chunks += samples;
  }
  for (const WavChunk& c : spec.chunksAfterData) chunks += WavChunkBytes(c);
  return "RIFF" + Le32(static_cast<uint32_t>(chunks.size() + 4)) + "WAVE" + chunks;
}

bool WriteWavFile(const std::string& path, const WavSpec& spec) {
  return SaveBytes(path, BuildWav(spec));
}

}  // namespace zansong_test

#include "samplefiles/mp3_writer.h"

#include <algorithm>

#include "samplefiles/midi_writer.h"

namespace samplefiles {

namespace {

// Bitrates in kbit/s for indexes 0-15 (0 = free format, -1 = forbidden).
const int kMpeg1[3][16] = {
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, -1},  // Layer I
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, -1},     // Layer II
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, -1},      // Layer III
};
const int kMpeg2[3][16] = {
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256, -1},  // Layer I
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, -1},       // Layer II
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160, -1},       // Layer III
};
const int kRateMpeg1[4] = {44100, 48000, 32000, 0};
const int kRateMpeg2[4] = {22050, 24000, 16000, 0};

std::string Field(const std::string& text, size_t size) {
  std::string out = text.substr(0, std::min(text.size(), size));
  out.resize(size, '\0');
  return out;
}

}  // namespace

std::string Mp3FrameHeader(const Mp3Frame& frame) {
  int versionBits = frame.mpeg1 ? 3 : 2;
  int layerCode = (4 - frame.layer) & 3;
  uint8_t b1 = static_cast<uint8_t>(0xE0 | (versionBits << 3) | (layerCode << 1) | 1);
  uint8_t b2 = static_cast<uint8_t>(((frame.bitrateIndex & 0x0F) << 4) |
                                    ((frame.sampleRateIndex & 3) << 2) | (frame.padding ? 2 : 0));
  return std::string{'\xFF', static_cast<char>(b1), static_cast<char>(b2), '\x00'};
}

int Mp3BitrateKbps(const Mp3Frame& frame) {
  if (frame.layer < 1 || frame.layer > 3 || frame.bitrateIndex < 0 || frame.bitrateIndex > 15) {
    return 0;
  }
  int rate = (frame.mpeg1 ? kMpeg1 : kMpeg2)[frame.layer - 1][frame.bitrateIndex];
  return rate < 0 ? 0 : rate;
}

int Mp3FrameLength(const Mp3Frame& frame) {
  int kbps = Mp3BitrateKbps(frame);
  if (kbps == 0 || frame.sampleRateIndex < 0 || frame.sampleRateIndex > 2) return 0;
  int rate = (frame.mpeg1 ? kRateMpeg1 : kRateMpeg2)[frame.sampleRateIndex];
  int pad = frame.padding ? 1 : 0;
  if (frame.layer == 1) return (12 * kbps * 1000 / rate + pad) * 4;
  if (frame.layer == 3 && !frame.mpeg1) return 72 * kbps * 1000 / rate + pad;
  return 144 * kbps * 1000 / rate + pad;
}

std::string Id3v1TagBytes(const Id3v1Tag& tag) {
  return "TAG" + Field(tag.title, 30) + Field(tag.artist, 30) + Field(tag.album, 30) +
         Field(tag.year, 4) + Field(tag.comment, 30) + std::string(1, static_cast<char>(tag.genre));
}

std::string BuildMp3(const Mp3Frame& frame, size_t audioBytes, const Id3v1Tag* tag) {
  std::string header = Mp3FrameHeader(frame);
  size_t frameLength = std::max<size_t>(static_cast<size_t>(Mp3FrameLength(frame)), 4);
  std::string out;
  out.reserve(audioBytes + 128);
  while (out.size() < audioBytes) {
    std::string one = header + std::string(frameLength - 4, '\0');
    out += one.substr(0, std::min(one.size(), audioBytes - out.size()));
  }
  if (tag != nullptr) out += Id3v1TagBytes(*tag);
  return out;
}

bool WriteMp3File(const std::string& path, const Mp3Frame& frame, size_t audioBytes,
                  const Id3v1Tag* tag) {
  return SaveBytes(path, BuildMp3(frame, audioBytes, tag));
}

}  // namespace samplefiles

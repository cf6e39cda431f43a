#include "samplefiles/midi_writer.h"

#include <cstdio>

namespace samplefiles {

std::string VarLen(uint32_t value, int width) {
  std::string groups(1, static_cast<char>(value & 0x7F));
  value >>= 7;
  while (value != 0) {
    groups.insert(groups.begin(), static_cast<char>(0x80 | (value & 0x7F)));
    value >>= 7;
  }
  while (static_cast<int>(groups.size()) < width) {
    groups.insert(groups.begin(), static_cast<char>(0x80));
  }
  return groups;
}

std::string Be16(uint32_t value) {
  return std::string{static_cast<char>((value >> 8) & 0xFF), static_cast<char>(value & 0xFF)};
}

std::string Be32(uint32_t value) { return Be16(value >> 16) + Be16(value & 0xFFFF); }

std::string Le16(uint32_t value) {
  return std::string{static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}

std::string Le32(uint32_t value) { return Le16(value & 0xFFFF) + Le16(value >> 16); }

void MidiTrack::Delta(uint32_t delta) {
  bytes_ += VarLen(delta);
  tick_ += delta;
}

MidiTrack& MidiTrack::ChannelMessage(uint32_t delta, uint8_t status, const std::string& data) {
  Delta(delta);
  if (!runningStatus_ || status != lastStatus_) bytes_ += static_cast<char>(status);
  lastStatus_ = status;
  bytes_ += data;
  return *this;
}

static std::string Two(int a, int b) {
  return std::string{static_cast<char>(a & 0x7F), static_cast<char>(b & 0x7F)};
}

MidiTrack& MidiTrack::NoteOn(uint32_t delta, int channel, int key, int velocity) {
  return ChannelMessage(delta, 0x90 | (channel & 0x0F), Two(key, velocity));
}

MidiTrack& MidiTrack::NoteOff(uint32_t delta, int channel, int key, int velocity) {
  return ChannelMessage(delta, 0x80 | (channel & 0x0F), Two(key, velocity));
}

MidiTrack& MidiTrack::KeyPressure(uint32_t delta, int channel, int key, int pressure) {
  return ChannelMessage(delta, 0xA0 | (channel & 0x0F), Two(key, pressure));
}

MidiTrack& MidiTrack::Control(uint32_t delta, int channel, int controller, int value) {
  return ChannelMessage(delta, 0xB0 | (channel & 0x0F), Two(controller, value));
}

MidiTrack& MidiTrack::Program(uint32_t delta, int channel, int program) {
  return ChannelMessage(delta, 0xC0 | (channel & 0x0F), std::string(1, program & 0x7F));
}

MidiTrack& MidiTrack::ChannelPressure(uint32_t delta, int channel, int pressure) {
  return ChannelMessage(delta, 0xD0 | (channel & 0x0F), std::string(1, pressure & 0x7F));
}

MidiTrack& MidiTrack::PitchBend(uint32_t delta, int channel, int lsb, int msb) {
  return ChannelMessage(delta, 0xE0 | (channel & 0x0F), Two(lsb, msb));
}

MidiTrack& MidiTrack::Meta(uint32_t delta, uint8_t type, const std::string& data, int lengthWidth) {
  Delta(delta);
  bytes_ += '\xFF';
  bytes_ += static_cast<char>(type);
  bytes_ += VarLen(static_cast<uint32_t>(data.size()), lengthWidth);
  bytes_ += data;
  return *this;
}

MidiTrack& MidiTrack::Tempo(uint32_t delta, uint32_t microsPerQuarter) {
  std::string data{static_cast<char>((microsPerQuarter >> 16) & 0xFF),
                   static_cast<char>((microsPerQuarter >> 8) & 0xFF),
                   static_cast<char>(microsPerQuarter & 0xFF)};
  return Meta(delta, 0x51, data);
}

MidiTrack& MidiTrack::PartChannels(uint32_t delta, int channelA, int channelB) {
  std::string data{'\x43', '\x7B', '\x0C', static_cast<char>(channelA),
                   static_cast<char>(channelB)};
  return SequencerSpecific(delta, data);
}

MidiTrack& MidiTrack::LongTitle(uint32_t delta, uint8_t form, const std::string& body) {
  std::string data{'\x43', '\x71', '\x00', '\x01', static_cast<char>(form)};
  return SequencerSpecific(delta, data + body);
}

MidiTrack& MidiTrack::SysEx(uint32_t delta, const std::string& data, int lengthWidth) {
  Delta(delta);
  bytes_ += '\xF0';
  bytes_ += VarLen(static_cast<uint32_t>(data.size()), lengthWidth);
  bytes_ += data;
  return *this;
}

MidiTrack& MidiTrack::SysExEscape(uint32_t delta, const std::string& data, int lengthWidth) {
  Delta(delta);
  bytes_ += '\xF7';
  bytes_ += VarLen(static_cast<uint32_t>(data.size()), lengthWidth);
  bytes_ += data;
  return *this;
}

MidiTrack& MidiTrack::SongId(uint32_t delta, const std::string& sixteenBytes) {
  return SysEx(delta, std::string("\x43\x71\x7E\x15", 4) + sixteenBytes + "\xF7");
}

MidiTrack& MidiTrack::TitleSysEx(uint32_t delta, const std::string& text) {
  return SysEx(delta, std::string("\x43\x71\x7E\x10\x03", 5) + text + "\xF7");
}

MidiTrack& MidiTrack::Raw(const std::string& bytes) {
  bytes_ += bytes;
  return *this;
}

std::string TrackChunk(const std::string& bytes) {
  return "MTrk" + Be32(static_cast<uint32_t>(bytes.size())) + bytes;
}

std::string RiffWrapper(uint32_t smfSize) {
  return "RIFF" + Le32(smfSize + 12) + "RMID" + "data" + Le32(smfSize);
}

std::string BuildSmf(const SmfOptions& options, const std::vector<std::string>& trackBytes) {
  int count =
      options.trackCountField >= 0 ? options.trackCountField : static_cast<int>(trackBytes.size());
  std::string file = "MThd" + Be32(6) + Be16(static_cast<uint32_t>(options.format)) +
                     Be16(static_cast<uint32_t>(count)) +
                     Be16(static_cast<uint32_t>(options.division));
  for (const std::string& bytes : trackBytes) file += TrackChunk(bytes);
  if (options.wrapped) file = RiffWrapper(static_cast<uint32_t>(file.size())) + file;
  return file;
}

std::string BuildSmf(const SmfOptions& options, const std::vector<MidiTrack>& tracks) {
  std::vector<std::string> trackBytes;
  for (const MidiTrack& track : tracks) trackBytes.push_back(track.bytes());
  return BuildSmf(options, trackBytes);
}

bool SaveBytes(const std::string& path, const std::string& bytes) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (f == nullptr) return false;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  if (std::fclose(f) != 0) ok = false;
  return ok;
}

}  // namespace samplefiles

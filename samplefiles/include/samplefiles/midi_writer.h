// Writer of Standard MIDI Files, built in memory.
//
// MidiTrack collects the events of one "MTrk" chunk.  Every event call takes
// the delta time in ticks since the previous event of the same track and
// returns the track, so that calls chain.  tick() is the absolute tick of the
// last event written; DeltaTo(t) is the delta that puts the next event at
// absolute tick t (0 when t is already behind).
//
// Lengths and delta times are written as variable-length quantities of the
// shortest form unless a width is given: a width of n bytes pads the quantity
// with leading 0x80 groups (a legal but longer form of the same value).
//
// With running status on (SetRunningStatus(true)), a channel message whose
// status equals the previous channel status is written without its status
// byte; system exclusive and meta events do not cancel it (as the library's
// MIDI walker expects; the caller decides what it writes).
//
// BuildSmf() assembles the file: the 14-byte "MThd" header (length 6, format,
// track count, division), then each track as "MTrk" + big-endian length +
// bytes.  With `wrapped`, the file is put behind the 20-byte RIFF wrapper
// "RIFF" <size> "RMID" "data" <size> (little-endian sizes).  The track count
// written is tracks.size() unless trackCountField is given.  Nothing here
// validates input: tests and fuzz seeds build malformed files on purpose.
//
// SaveBytes() writes bytes to a path (created or truncated); true on success.
// It is shared by the WAV and MP3 writers.
#ifndef ZANSONG_SAMPLEFILES_MIDI_WRITER_H_
#define ZANSONG_SAMPLEFILES_MIDI_WRITER_H_

#include <cstdint>
#include <string>
#include <vector>

namespace samplefiles {

// Variable-length quantity of value, most significant group first; width 0
// is the shortest form, a larger width pads with leading 0x80 bytes.
std::string VarLen(uint32_t value, int width = 0);
// 16- and 32-bit big-endian bytes.
std::string Be16(uint32_t value);
std::string Be32(uint32_t value);
std::string Le16(uint32_t value);
std::string Le32(uint32_t value);

class MidiTrack {
 public:
  MidiTrack() = default;

  void SetRunningStatus(bool on) { runningStatus_ = on; }
  uint32_t tick() const { return tick_; }
  uint32_t DeltaTo(uint32_t absoluteTick) const {
    return absoluteTick > tick_ ? absoluteTick - tick_ : 0;
  }

  // Channel messages; channel is 0-based (0-15).
  MidiTrack& NoteOn(uint32_t delta, int channel, int key, int velocity);
  MidiTrack& NoteOff(uint32_t delta, int channel, int key, int velocity = 0);
  MidiTrack& KeyPressure(uint32_t delta, int channel, int key, int pressure);
  MidiTrack& Control(uint32_t delta, int channel, int controller, int value);
  MidiTrack& Program(uint32_t delta, int channel, int program);
  MidiTrack& ChannelPressure(uint32_t delta, int channel, int pressure);
  MidiTrack& PitchBend(uint32_t delta, int channel, int lsb, int msb);
  // Any channel message: status 0x80-0xEF and its data bytes.
  MidiTrack& ChannelMessage(uint32_t delta, uint8_t status, const std::string& data);

  // Meta event 0xFF type length data; lengthWidth as for VarLen.
  MidiTrack& Meta(uint32_t delta, uint8_t type, const std::string& data, int lengthWidth = 0);
  MidiTrack& Text(uint32_t delta, const std::string& text) { return Meta(delta, 0x01, text); }
  MidiTrack& Notice(uint32_t delta, const std::string& text) { return Meta(delta, 0x02, text); }
  MidiTrack& TrackName(uint32_t delta, const std::string& text) { return Meta(delta, 0x03, text); }
  // Tempo in microseconds per quarter note (24 bits).
  MidiTrack& Tempo(uint32_t delta, uint32_t microsPerQuarter);
  MidiTrack& EndOfTrack(uint32_t delta = 0) { return Meta(delta, 0x2F, ""); }
  // Sequencer-specific meta event (type 0x7F).
  MidiTrack& SequencerSpecific(uint32_t delta, const std::string& data) {
    return Meta(delta, 0x7F, data);
  }
  // Part-channel declaration: sequencer-specific 43 7B 0C a b.
  MidiTrack& PartChannels(uint32_t delta, int channelA, int channelB);
  // Long-title event: sequencer-specific 43 71 00 01 form, then body.
  MidiTrack& LongTitle(uint32_t delta, uint8_t form, const std::string& body);

  // System exclusive: 0xF0 length data (data normally ends in 0xF7) and the
  // escape form 0xF7 length data.
  MidiTrack& SysEx(uint32_t delta, const std::string& data, int lengthWidth = 0);
  MidiTrack& SysExEscape(uint32_t delta, const std::string& data, int lengthWidth = 0);
  // Song identifier message: F0 15 43 71 7E 15 <16 bytes> F7.
  MidiTrack& SongId(uint32_t delta, const std::string& sixteenBytes);
  // Title message: F0 <len> 43 71 7E 10 03 <text> F7.
  MidiTrack& TitleSysEx(uint32_t delta, const std::string& text);

  // Raw bytes appended as they are (delta time included by the caller).
  MidiTrack& Raw(const std::string& bytes);

  const std::string& bytes() const { return bytes_; }

 private:
  void Delta(uint32_t delta);

  std::string bytes_;
  uint32_t tick_ = 0;
  bool runningStatus_ = false;
  int lastStatus_ = -1;
};

struct SmfOptions {
  int format = 1;
  int division = 480;
  bool wrapped = false;
  int trackCountField = -1;  // -1: the number of tracks given
};

std::string BuildSmf(const SmfOptions& options, const std::vector<std::string>& trackBytes);
std::string BuildSmf(const SmfOptions& options, const std::vector<MidiTrack>& tracks);
// One "MTrk" chunk around the given bytes (length field = bytes.size()).
std::string TrackChunk(const std::string& bytes);
// The 20-byte RIFF wrapper put before an SMF of smfSize bytes.
std::string RiffWrapper(uint32_t smfSize);

bool SaveBytes(const std::string& path, const std::string& bytes);

}  // namespace samplefiles

#endif  // ZANSONG_SAMPLEFILES_MIDI_WRITER_H_

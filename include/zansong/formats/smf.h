// Standard MIDI File reader and title rewrite.
//
// A one-pass event walker over a format 0 or 1 file (optionally behind the
// 20-byte RIFF wrapper "RIFF" size "RMID" "data" size).  It keeps only a
// cursor per track and fills a TSongPara: the format, the title, notice and
// text of the first track, the long title and song identifier carried in
// maker-specific events, the declared part channels, which channels hold
// notes, and the playing time computed through the tempo map.
//
// The walker never reads outside a track's data: a variable-length quantity
// or an event whose length runs past the end of the track ends that track
// where the complete data ends.  Files that are well formed are not affected.
//
// GetSMFInfo(path, para, headOnly, reserved): zero-fills para, loads and
//   walks the file (with headOnly, every track is cut to its first 1024 bytes
//   and only the events at tick 0 are read).  Returns 1, or 0 when the file
//   cannot be opened or is not an acceptable SMF (no "MThd", format above 1,
//   SMPTE division, a missing "MTrk", a short track).  reserved is unused.
// SetSMFTitle(path, newTitleUtf8): rewrites the file at path with the title
//   converted to Shift-JIS: it replaces the first track-name event found in
//   the track data, or inserts one at the start of the first track when the
//   first track has no title at tick 0.  A wrapped file is written back as a
//   plain SMF.  The modification and access times are kept.  Returns 1, or 0
//   when the file cannot be loaded or rewritten; on failure the original is
//   left under its name, byte for byte.
#ifndef ZANSONG_FORMATS_SMF_H_
#define ZANSONG_FORMATS_SMF_H_

#include <cstdint>
#include <memory>
#include <vector>

#include "zansong/common/string_list.h"
#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// What GetSMFInfo reads out of a MIDI file.
struct TSongPara {
  uint32_t format;      // SMF format number (0 or 1)
  int32_t partMode;     // 0 no part channels, 1 solo piano, 2 ensemble
  char title[1024];     // track name of the first track (at most 1023 bytes)
  uint32_t titleStart;  // offset of its 0xFF byte within the first track's data
  uint32_t titleEnd;    // offset just past its text
  char notice[1024];    // meta event type 2 of the first track
  char text[1024];      // meta event type 1 of the first track
  char longTitle[33];   // long title (32 bytes and a NUL)
  int64_t totalTimeMs;  // playing time in milliseconds
  char songId[36];      // 32 hexadecimal digits and a NUL
  uint32_t attribute;   // attribute byte of the long-title event
  uint32_t channelA;    // first declared part channel, 1-based (0 = none)
  uint32_t channelB;    // second declared part channel, 1-based (0 = none)
  // Per channel 0-15: bit 0 set when a note-on or key pressure was met.
  uint32_t channelNotes[16];
};

// Where an event that the title editor cares about sits in the file.
struct TSmfEventLocation {
  uint32_t position;  // file offset of the event's 0xFF byte
  uint32_t length;    // bytes from the 0xFF byte to the end of its data
  uint32_t kind;      // 0 title, 1 part channels, 2 long title
};

class TSmfData;

// One "MTrk" chunk and the walker's cursor in it.
class ZANSONG_EXPORT TTrackData {
 public:
  // index: the track's place in the file (0 for the first track).
  explicit TTrackData(TSmfData* owner, int index = 0);
  ~TTrackData();
  TTrackData(const TTrackData&) = delete;
  TTrackData& operator=(const TTrackData&) = delete;

  // Reads one chunk from fd: the 8-byte header must be "MTrk" and a
  // big-endian length; with limit, at most 1024 data bytes are kept (and
  // read).  1 when all of them arrived, else 0.
  int LoadFromFileHandle(int fd, bool limit);
  // The same from bytes in memory, which the track refers to without
  // copying them: they must stay in place until the track is loaded again
  // or destroyed.  On success *used is the number of bytes taken (header
  // and kept data).
  int LoadFromMemory(const unsigned char* bytes, size_t size, bool limit, size_t* used);

  // Cursor to the start, tick counter -1, running status and flags cleared.
  void SetFirst();
  // Clears the end flag; a track without data counts as ended.  Returns 1
  // when the track has data.
  int PreparePlay();
  // Reads the delta time at the cursor and moves past it; 0 when the
  // quantity runs past the data (the cursor then stays).
  int GetValue(unsigned* value);
  // The same without moving the cursor.
  int QueryValue(unsigned* value);
  // Advances the tick counter by step and handles every event that is due.
  // Returns the ticks until the next event, or 0 once the track has ended.
  int64_t DecDeltaTime(int64_t step, int trackIndex);
  // Event handlers; the cursor is at the event's first byte (0xFF, 0xF0 or
  // 0xF7, a status byte, a data byte under running status).  Each moves the
  // cursor past the event and returns 1, or ends the track and returns 0
  // when the event runs past the data.
  int MetaEvent(int trackIndex);
  int SysExclusive();
  int ShortEvent();
  int RuningStatus();

  bool IsEnded() const { return ended_; }
  uint32_t GetDataLength() const { return length_; }
  const unsigned char* GetData() const { return data_; }
  const unsigned char* GetChunkHeader() const { return header_; }
  uint32_t GetPosition() const { return position_; }
  void SetPosition(uint32_t position) { position_ = position; }
  // The tick (counted from the track's start) at which the track ended.
  int64_t GetEndTick() const { return endTick_; }

 private:
  // Marks the track ended and tells the owner.
  ZANSONG_HIDDEN inline void End();
  // Applies a channel message with status status whose data bytes start at
  // the cursor; ends the track and returns 0 when they run past the data.
  ZANSONG_HIDDEN int ChannelData(unsigned char status);
  // Reads the length quantity at lengthAt and moves the cursor past the
  // body that follows it.  Stores where the body starts and its size and
  // returns true; ends the track and returns false when the quantity or the
  // body runs past the data.
  ZANSONG_HIDDEN bool SkipLengthPrefixedBody(uint32_t lengthAt, uint32_t* body, unsigned* size);

  TSmfData* owner_;
  int index_;
  uint32_t position_ = 0;
  int64_t tick_ = -1;
  int64_t absoluteTick_ = 0;  // tick of the last event handled
  int64_t endTick_ = 0;
  unsigned char runningStatus_ = 0;
  uint32_t peekPosition_ = 0xFFFFFFFF;
  unsigned peekValue_ = 0;
  int peekSize_ = 0;
  bool ended_ = false;
  uint32_t length_ = 0;
  const unsigned char* data_ = nullptr;     // the track's data
  std::unique_ptr<unsigned char[]> owned_;  // data read from a file handle
  unsigned char header_[8] = {};
};

// One file being read.
class ZANSONG_EXPORT TSmfData {
 public:
  TSmfData();
  ~TSmfData();
  TSmfData(const TSmfData&) = delete;
  TSmfData& operator=(const TSmfData&) = delete;

  // Loads the header and every track.  With limit, a track is cut to its
  // first 1024 bytes, so only the last track may be longer.  1 on success,
  // 0 when the file cannot be opened or is not an acceptable SMF.
  int LoadFromFile(const char* path, bool limit);
  // Starts a walk that fills para (tempo 120 BPM, every cursor at 0, part
  // channels and note flags of para cleared).
  void SetFirst(TSongPara* para);
  // Walks the tracks (only tick 0 with headOnly) and returns the playing
  // time in microseconds.
  double GetTotalTime(bool headOnly);
  // Writes the loaded file to path with title (raw bytes) as the first
  // track-name event: inserted at the start of the first track with insert,
  // else replacing the first FF 03 event found by a byte search of the
  // tracks.  1 when every write succeeded, 0 otherwise (also when nothing
  // is loaded).
  int ChangeTitle(const char* path, const char* title, bool insert);
  // Frees the tracks and event locations.
  void Clear();
  // A track has ended: one fewer active track.
  void NotifyEot() { --activeTracks_; }

  // Variable-length quantity at p (7 bits a byte, most significant group
  // first).  Returns its byte count; p must hold a complete quantity.
  static int GetValue2(const unsigned char* p, unsigned* value);
  // The same reading at most size bytes; 0 when the quantity is incomplete.
  static int GetValue2(const unsigned char* p, size_t size, unsigned* value);
  // Writes value as a variable-length quantity, most significant group
  // first (as in the file).  Returns the byte count (1-5).
  static int ChangeValue(unsigned value, unsigned char* out);
  // The same groups, least significant first (the order in which they are
  // computed).  Returns the byte count.
  static int GetLengthValue(unsigned value, unsigned char* out);

  uint32_t GetTrackStartPosition() const { return trackStart_; }
  uint32_t GetTrack1DataSize() const { return track1Size_; }
  void SetTrack1DataSize(uint32_t size) { track1Size_ = size; }
  unsigned char GetHpFlag() const { return hpFlag_; }
  void SetHpFlag(unsigned char flag) { hpFlag_ = flag; }
  int GetTrackCount() const { return static_cast<int>(tracks_.size()); }
  TTrackData* GetTrackDatas(int i) const;
  // The title, part-channel and long-title events met by the walk, in
  // order (items are TSmfEventLocation*, owned by this object).
  TSList* GetConvPara() { return &locations_; }
  int GetFormat() const { return format_; }
  int GetDivision() const { return division_; }
  int GetActiveTrackCount() const { return activeTracks_; }

  // Used by the track walker.
  TSongPara* para() const { return para_; }
  int64_t currentTick() const { return currentTick_; }
  void AddLocation(uint32_t trackOffset, uint32_t length, uint32_t kind);
  // During GetTotalTime's per-track walk: notes the meta or system exclusive
  // event at position of track, due at tick, to be applied later, and
  // returns true.  At other times returns false (apply it now).
  bool Defer(uint32_t position, int track, int64_t tick);
  void ChangeTempo(uint32_t microsPerQuarter);

 private:
  ZANSONG_HIDDEN void ClearLocations();

  // The whole file as read; the tracks refer to their data in it.
  std::unique_ptr<unsigned char[]> file_;

  struct DeferredEvent {
    int64_t tick;
    int track;
    uint32_t position;
  };

  unsigned char header_[14] = {};
  int64_t currentTick_ = -1;
  int activeTracks_ = 0;
  double microsPerTick_ = 0;
  uint32_t trackStart_ = 22;
  uint32_t track1Size_ = 0;
  unsigned char hpFlag_ = 1;
  std::vector<std::unique_ptr<TTrackData>> tracks_;
  TSList locations_;
  int division_ = 480;
  double tempo_ = 120.0;
  TSongPara* para_ = nullptr;
  int64_t lastTempoTick_ = 0;
  int64_t accumulatedMicros_ = 0;
  TSString scratch_;
  int format_ = 0;
  bool deferring_ = false;
  std::vector<DeferredEvent> deferred_;
};

// Ending a track, inline so that the event loop does not pay a call.
inline void TTrackData::End() {
  if (ended_) return;
  ended_ = true;
  endTick_ = absoluteTick_;
  owner_->NotifyEot();
}

ZANSONG_EXPORT int GetSMFInfo(const char* path, TSongPara* para, bool headOnly,
                              const char* reserved);
ZANSONG_EXPORT int SetSMFTitle(const char* path, const char* newTitleUtf8);

#endif  // ZANSONG_FORMATS_SMF_H_

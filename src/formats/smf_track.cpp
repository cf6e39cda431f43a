// The per-track half of the MIDI walker: loading one "MTrk" chunk and
// handling its events one delta time at a time.
#include <unistd.h>

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "formats/smf_quantity.h"
#include "zansong/common/convert.h"
#include "zansong/formats/smf.h"

namespace {

// Data kept per track when only the head of a file is read.
constexpr uint32_t kHeadLimit = 1024;

// Copies at most max bytes of text into dst and terminates it.
void CopyText(char* dst, const unsigned char* text, uint32_t length, uint32_t max) {
  uint32_t n = length < max ? length : max;
  std::memcpy(dst, text, n);
  dst[n] = '\0';
}

// Whether a channel status byte (0x80-0xEF) takes one data byte (program
// change, channel pressure) rather than two.
inline bool TakesOneDataByte(unsigned char status) { return (status & 0xE0) == 0xC0; }

// For each status byte: the bit of its channel when it marks the channel as
// carrying notes (note-on, velocity 0 too, and polyphonic key pressure),
// else 0.
struct NoteChannelBits {
  uint16_t bit[256] = {};
  constexpr NoteChannelBits() {
    for (int status = 0x90; status < 0xB0; ++status) {
      bit[status] = static_cast<uint16_t>(1u << (status & 0x0F));
    }
  }
  constexpr uint16_t operator[](unsigned char status) const { return bit[status]; }
};
constexpr NoteChannelBits kNoteChannelBit;

// Applies the channel message with status status whose data bytes start at
// *position: moves past them and marks the channel of a note-on or key
// pressure in notes.  false when the data bytes run past length.
inline bool ApplyChannelMessage(unsigned char status, uint32_t length, uint32_t* position,
                                uint32_t* notes) {
  uint32_t count = TakesOneDataByte(status) ? 1 : 2;
  if (count > length - *position) return false;
  if (kNoteChannelBit[status] != 0 && notes != nullptr) notes[status & 0x0F] |= 1;
  *position += count;
  return true;
}

// The longest event the walker's quick loop reads: a two-byte delta time,
// a status byte and two data bytes.
constexpr uint32_t kQuickEventBytes = 5;

// Marks in notes (one word per channel) the channels whose bits are set in
// channels.
inline void MarkNoteChannels(uint32_t channels, uint32_t* notes) {
  for (; channels != 0; channels &= channels - 1) notes[__builtin_ctz(channels)] |= 1;
}

// The walker's cursor in the quick loop.
struct QuickCursor {
  uint32_t position;
  int64_t absolute;       // tick of the last event walked
  unsigned char running;  // running status
  uint32_t noted;         // bit c: a note on channel c was met
};

// The quick loop of the walker: walks the channel messages with delta times
// of one or two bytes that start before quickEnd (so that every byte of
// them lies within the data) and are due by the tick limit.  It stops at the
// first event that is anything else, leaving it unread.  A running status
// has had its channel noted when its status byte was read.
//
// It is a function of its own so that the compiler can keep the cursor in
// registers, and it is written for a short chain of dependent steps from
// one event to the next: the length of a delta time is worked out without
// a branch (those lengths follow no pattern a branch predictor could
// learn), and the number of data bytes with one (the empty asm keeps the
// compiler from turning that branch into arithmetic on the byte just read).
__attribute__((noinline)) void WalkChannelMessages(const unsigned char* data, uint32_t quickEnd,
                                                   int64_t limit, QuickCursor* cursor) {
  uint32_t position = cursor->position;
  int64_t absolute = cursor->absolute;
  unsigned char running = cursor->running;
  uint32_t noted = cursor->noted;
  while (position < quickEnd) {
    const unsigned b0 = data[position];
    const unsigned b1 = data[position + 1];
    if ((b0 & b1) >= 0x80) break;      // a delta time of three bytes or more
    const unsigned two = b0 >> 7;      // 1 when a second byte follows
    const unsigned longer = 0u - two;  // all ones for two bytes
    const unsigned delta = (b0 & ~longer) | ((((b0 & 0x7Fu) << 7) | b1) & longer);
    const int64_t due = absolute + delta;
    if (due > limit) break;
    uint32_t at = position + 1 + two;
    const unsigned char status = data[at];
    if (status >= 0x80) {
      if (status >= 0xF0) break;
      noted |= kNoteChannelBit[status];
      running = status;
      ++at;
    } else if (running == 0) {
      break;  // a data byte before any status
    }
    absolute = due;
    if (TakesOneDataByte(running)) {
      asm("");
      position = at + 1;  // program change, channel pressure
    } else {
      position = at + 2;
    }
  }
  cursor->position = position;
  cursor->absolute = absolute;
  cursor->running = running;
  cursor->noted = noted;
}

}  // namespace

TTrackData::TTrackData(TSmfData* owner, int index) : owner_(owner), index_(index) {}

TTrackData::~TTrackData() = default;

int TTrackData::LoadFromFileHandle(int fd, bool limit) {
  unsigned char header[8];
  if (::read(fd, header, sizeof header) != static_cast<ssize_t>(sizeof header)) return 0;
  if (std::memcmp(header, "MTrk", 4) != 0) return 0;
  uint32_t length = BigToLittle4(header + 4);
  if (limit && length > kHeadLimit) length = kHeadLimit;
  std::unique_ptr<unsigned char[]> data(new (std::nothrow) unsigned char[length == 0 ? 1 : length]);
  if (data == nullptr) return 0;
  size_t got = 0;
  while (got < length) {
    ssize_t n = ::read(fd, data.get() + got, length - got);
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  if (got != length) return 0;
  owned_ = std::move(data);
  data_ = owned_.get();
  length_ = length;
  std::memcpy(header_, header, sizeof header);
  return 1;
}

int TTrackData::LoadFromMemory(const unsigned char* bytes, size_t size, bool limit, size_t* used) {
  if (size < 8 || std::memcmp(bytes, "MTrk", 4) != 0) return 0;
  uint32_t length = BigToLittle4(const_cast<unsigned char*>(bytes) + 4);
  if (limit && length > kHeadLimit) length = kHeadLimit;
  if (length > size - 8) return 0;
  owned_.reset();
  data_ = bytes + 8;
  length_ = length;
  std::memcpy(header_, bytes, 8);
  *used = 8 + static_cast<size_t>(length);
  return 1;
}

void TTrackData::SetFirst() {
  position_ = 0;
  tick_ = -1;
  absoluteTick_ = 0;
  endTick_ = 0;
  runningStatus_ = 0;
  peekPosition_ = 0xFFFFFFFF;
  ended_ = false;
}

int TTrackData::PreparePlay() {
  ended_ = length_ == 0;
  return ended_ ? 0 : 1;
}

int TTrackData::QueryValue(unsigned* value) {
  if (peekPosition_ != position_) {
    if (position_ >= length_) return 0;
    peekSize_ = zansong::ReadQuantity(data_ + position_, length_ - position_, &peekValue_);
    if (peekSize_ == 0) return 0;
    peekPosition_ = position_;
  }
  *value = peekValue_;
  return peekSize_;
}

int TTrackData::GetValue(unsigned* value) {
  int n = QueryValue(value);
  position_ += static_cast<uint32_t>(n);
  return n;
}

int TTrackData::ChannelData(unsigned char status) {
  uint32_t* notes = owner_->para() != nullptr ? owner_->para()->channelNotes : nullptr;
  if (!ApplyChannelMessage(status, length_, &position_, notes)) {
    End();
    return 0;
  }
  return 1;
}

int64_t TTrackData::DecDeltaTime(int64_t step, int trackIndex) {
  tick_ += step;
  // The loop works on local copies of the cursor state, stored back before
  // any other handler runs and on every way out.  Channels that carry notes
  // are gathered by the quick loop as bits of `noted` and marked in para
  // when stored.
  const unsigned char* const data = data_;
  const uint32_t length = length_;
  uint32_t* const notes = owner_->para() != nullptr ? owner_->para()->channelNotes : nullptr;
  uint32_t position = position_;
  int64_t tick = tick_;
  int64_t absolute = absoluteTick_;
  unsigned char running = runningStatus_;
  uint32_t noted = 0;
  auto store = [&] {
    position_ = position;
    tick_ = tick;
    absoluteTick_ = absolute;
    runningStatus_ = running;
    if (notes != nullptr) MarkNoteChannels(noted, notes);
    noted = 0;
  };
  auto end = [&] {
    store();
    End();
    return 0;
  };
  // The delta time at the cursor may have been read by the call before.
  bool peeked = peekPosition_ == position;
  // Up to here every event of the quick loop lies within the data: one
  // delta time of at most two bytes, a status byte, two data bytes.
  const uint32_t quickEnd = length > kQuickEventBytes ? length - kQuickEventBytes : 0;

  while (!ended_ && position < length) {
    if (!peeked) {
      QuickCursor cursor{position, absolute, running, noted};
      const int64_t limit = tick > INT64_MAX - absolute ? INT64_MAX : tick + absolute;
      WalkChannelMessages(data, quickEnd, limit, &cursor);
      tick -= cursor.absolute - absolute;
      position = cursor.position;
      absolute = cursor.absolute;
      running = cursor.running;
      noted = cursor.noted;
    }
    // The complete step: one event of any kind, anywhere in the data.
    unsigned delta;
    uint32_t n;
    if (peeked) {
      delta = peekValue_;
      n = static_cast<uint32_t>(peekSize_);
      peeked = false;
    } else {
      int size = zansong::ReadQuantity(data + position, length - position, &delta);
      if (size == 0) return end();  // the delta time runs past the data
      n = static_cast<uint32_t>(size);
    }
    if (tick < static_cast<int64_t>(delta)) {
      peekPosition_ = position;
      peekValue_ = delta;
      peekSize_ = static_cast<int>(n);
      store();
      return static_cast<int64_t>(delta) - tick;
    }
    position += n;
    tick -= delta;
    absolute += delta;
    if (position >= length) return end();  // a delta time with no event after it
    const unsigned char first = data[position];
    if (first < 0xF0 && (first >= 0x80 || running != 0)) {
      if (first >= 0x80) {
        running = first;
        ++position;
      }
      if (!ApplyChannelMessage(running, length, &position, notes)) return end();
    } else {
      store();
      int handled;
      if (first == 0xFF) {
        handled = MetaEvent(trackIndex);
      } else if (first == 0xF0 || first == 0xF7) {
        handled = SysExclusive();
      } else if (first < 0x80) {
        handled = RuningStatus();
      } else {
        handled = ShortEvent();
      }
      if (handled == 0) return 0;
      position = position_;
      running = runningStatus_;
    }
    if (position >= length) return end();
  }
  store();
  return 0;
}

int TTrackData::ShortEvent() {
  unsigned char status = data_[position_];
  if (status < 0xF0) {
    runningStatus_ = status;
    ++position_;
    return ChannelData(status);
  }
  // Other system messages are skipped by the byte that follows them.
  uint32_t skip = 1;
  if (position_ + 1 < length_) {
    unsigned char next = data_[position_ + 1];
    if (next == 0xF2) {
      skip = 3;
    } else if (next == 0xF1 || next == 0xF3) {
      skip = 2;
    }
  }
  if (skip > length_ - position_) {
    End();
    return 0;
  }
  position_ += skip;
  return 1;
}

int TTrackData::RuningStatus() {
  if (runningStatus_ == 0) {  // a stray data byte before any status
    ++position_;
    return 1;
  }
  return ChannelData(runningStatus_);
}

bool TTrackData::SkipLengthPrefixedBody(uint32_t lengthAt, uint32_t* body, unsigned* size) {
  int n = zansong::ReadQuantity(data_ + lengthAt, length_ - lengthAt, size);
  if (n == 0) {
    End();
    return false;
  }
  *body = lengthAt + static_cast<uint32_t>(n);
  if (*size > length_ - *body) {
    End();
    return false;
  }
  position_ = *body + *size;
  return true;
}

int TTrackData::MetaEvent(int trackIndex) {
  uint32_t start = position_;
  if (length_ - start < 3) {
    End();
    return 0;
  }
  unsigned char type = data_[start + 1];
  uint32_t body;
  unsigned size;
  if (!SkipLengthPrefixedBody(start + 2, &body, &size)) return 0;
  if (owner_->Defer(start, trackIndex, absoluteTick_)) {
    if (type == 0x2F) End();
    return 1;
  }
  const unsigned char* text = data_ + body;
  TSongPara* para = owner_->para();

  switch (type) {
    case 0x03:
      if (trackIndex == 0 && para != nullptr) {
        CopyText(para->title, text, size, sizeof para->title - 1);
        para->titleStart = start;
        para->titleEnd = position_;
        owner_->AddLocation(start, position_ - start, 0);
      }
      break;
    case 0x02:
      if (trackIndex == 0 && para != nullptr) {
        CopyText(para->notice, text, size, sizeof para->notice - 1);
      }
      break;
    case 0x01:
      if (trackIndex == 0 && para != nullptr) {
        CopyText(para->text, text, size, sizeof para->text - 1);
      }
      break;
    case 0x51:
      if (size >= 3) {
        owner_->ChangeTempo((static_cast<uint32_t>(text[0]) << 16) |
                            (static_cast<uint32_t>(text[1]) << 8) | text[2]);
      }
      break;
    case 0x2F:
      End();
      break;
    case 0x7F:
      if (size == 5 && text[0] == 0x43 && text[1] == 0x7B && text[2] == 0x0C) {
        if (para != nullptr) {
          para->channelA = text[3];
          para->channelB = text[4];
        }
        owner_->AddLocation(start, position_ - start, 1);
      } else if (size >= 6 && text[0] == 0x43 && text[1] == 0x71 && text[2] == 0x00 &&
                 text[3] == 0x01) {
        unsigned char form = text[4];
        const unsigned char* rest = text + 5;
        uint32_t count = size - 5 < 34 ? size - 5 : 34;
        if (para != nullptr) {
          if (form == 1) {
            para->attribute = rest[0];
            CopyText(para->longTitle, rest + 1, count - 1, sizeof para->longTitle - 1);
          } else if (form == 0) {
            owner_->SetHpFlag(rest[0]);
            if (count >= 2) para->attribute = rest[1];
            CopyText(para->longTitle, rest + 2, count >= 2 ? count - 2 : 0,
                     sizeof para->longTitle - 1);
          } else if (form == 2) {
            CopyText(para->longTitle, rest, count, sizeof para->longTitle - 1);
          }
        }
        owner_->AddLocation(start, position_ - start, 2);
      }
      break;
    default:
      break;
  }
  return 1;
}

int TTrackData::SysExclusive() {
  uint32_t start = position_;
  bool withF0 = data_[start] == 0xF0;
  uint32_t body;
  unsigned size;
  if (!SkipLengthPrefixedBody(start + 1, &body, &size)) return 0;
  if (owner_->Defer(start, index_, absoluteTick_)) return 1;
  TSongPara* para = owner_->para();
  if (para == nullptr || size == 0 || data_[body + size - 1] != 0xF7) return 1;

  // The message as sent: 0xF0 and the data, or for 0xF7 events the data
  // alone.  Its last byte is the closing 0xF7.
  const unsigned char* data = data_ + body;
  uint32_t messageLength = size + (withF0 ? 1 : 0);
  auto at = [&](uint32_t i) -> unsigned char {
    if (withF0) return i == 0 ? 0xF0 : data[i - 1];
    return data[i];
  };
  auto begins = [&](const unsigned char* prefix, uint32_t count) {
    if (messageLength < count) return false;
    for (uint32_t i = 0; i < count; ++i) {
      if (at(i) != prefix[i]) return false;
    }
    return true;
  };

  static const unsigned char kSongId[] = {0xF0, 0x43, 0x71, 0x7E, 0x15};
  static const unsigned char kTitle[] = {0xF0, 0x43, 0x71, 0x7E, 0x10, 0x03};
  if (size == 21 && begins(kSongId, sizeof kSongId)) {
    for (uint32_t i = 0; i < 16; ++i) {
      TSString digits = UIntToSHex(at(5 + i), 2);
      para->songId[2 * i] = digits[0];
      para->songId[2 * i + 1] = digits[1];
    }
    para->songId[32] = '\0';
  } else if (messageLength > 7 && begins(kTitle, sizeof kTitle)) {
    uint32_t from = 6;
    if (at(from) == 0x1E || at(from) == 0x1F) ++from;
    // The text ends before the closing 0xF7.  An escaped pair fills the
    // position of its first byte; the position of its second is left as it
    // was, so source and destination stay in step.
    uint32_t end = messageLength - 1;
    uint32_t k = 0;
    while (k < 32 && from + k < end) {
      unsigned char c = at(from + k);
      if (c == 0) break;
      if (c == 0x1E || c == 0x1F) {
        if (from + k + 1 >= end) break;
        unsigned char v = at(from + k + 1);
        if (c == 0x1E) v |= 0x80;
        para->title[k] = static_cast<char>(v);
        para->longTitle[k] = static_cast<char>(v);
        k += 2;
      } else {
        para->title[k] = static_cast<char>(c);
        para->longTitle[k] = static_cast<char>(c);
        ++k;
      }
    }
    if (k > 32) k = 32;
    para->title[k] = '\0';
    para->longTitle[k] = '\0';
  }
  return 1;
}

// The per-file half of the MIDI walker: loading, the tempo map, the walk
// over all tracks, variable-length quantities and the title rewrite.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "common/handles.h"
#include "formats/smf_quantity.h"
#include "formats/whole_file.h"
#include "zansong/common/convert.h"
#include "zansong/formats/smf.h"

namespace {

// A microsecond count as a 64-bit integer, truncated toward zero; values
// beyond the 64-bit range are held at its ends and NaN counts as 0.
int64_t MicrosToInt(double micros) {
  if (std::isnan(micros)) return 0;
  if (micros >= 9.2e18) return INT64_MAX;
  if (micros <= -9.2e18) return INT64_MIN;
  return static_cast<int64_t>(micros);
}

int64_t SaturatingAdd(int64_t a, int64_t b) {
  int64_t sum;
  if (__builtin_add_overflow(a, b, &sum)) return b > 0 ? INT64_MAX : INT64_MIN;
  return sum;
}

}  // namespace

TSmfData::TSmfData() = default;

TSmfData::~TSmfData() { Clear(); }

void TSmfData::ClearLocations() {
  locations_.First();
  while (locations_.HasNext()) delete static_cast<TSmfEventLocation*>(locations_.GetNext());
  locations_.Clear();
}

void TSmfData::Clear() {
  tracks_.clear();
  file_.reset();
  ClearLocations();
}

TTrackData* TSmfData::GetTrackDatas(int i) const {
  if (i < 0 || i >= GetTrackCount()) return nullptr;
  return tracks_[static_cast<size_t>(i)].get();
}

bool TSmfData::Defer(uint32_t position, int track, int64_t tick) {
  if (!deferring_) return false;
  deferred_.push_back(DeferredEvent{tick, track, position});
  return true;
}

void TSmfData::AddLocation(uint32_t trackOffset, uint32_t length, uint32_t kind) {
  locations_.Add(new TSmfEventLocation{trackStart_ + trackOffset, length, kind});
}

int TSmfData::LoadFromFile(const char* path, bool limit) {
  Clear();
  zansong::WholeFile file;
  if (!file.Load(path)) return 0;
  const unsigned char* bytes = file.data();
  size_t size = file.size();

  // The header may sit behind the 20-byte RIFF wrapper, whose own bytes are
  // not checked.
  size_t offset = 0;
  if (size < 4 || std::memcmp(bytes, "MThd", 4) != 0) {
    offset = 20;
    if (size < 24 || std::memcmp(bytes + 20, "MThd", 4) != 0) return 0;
  }
  if (size - offset < sizeof header_) return 0;
  std::memcpy(header_, bytes + offset, sizeof header_);
  trackStart_ = static_cast<uint32_t>(offset) + 22;
  format_ = static_cast<int>(BigToLittle2(header_ + 8));
  int trackCount = static_cast<int>(BigToLittle2(header_ + 10));
  division_ = static_cast<int>(BigToLittle2(header_ + 12));
  if (format_ > 1 || division_ >= 32768) return 0;

  size_t position = offset + sizeof header_;
  tracks_.reserve(static_cast<size_t>(trackCount));
  for (int i = 0; i < trackCount; ++i) {
    auto track = std::make_unique<TTrackData>(this, i);
    size_t used = 0;
    if (!track->LoadFromMemory(bytes + position, size - position, limit, &used)) {
      Clear();
      return 0;
    }
    position += used;
    tracks_.push_back(std::move(track));
  }
  file_ = file.Release();  // the tracks' data
  currentTick_ = 0;
  return 1;
}

void TSmfData::SetFirst(TSongPara* para) {
  para_ = para;
  tempo_ = 120.0;
  for (auto& track : tracks_) track->SetFirst();
  currentTick_ = -1;
  accumulatedMicros_ = 0;
  lastTempoTick_ = 0;
  scratch_ = "";
  ClearLocations();
  if (para != nullptr) {
    para->channelA = 0;
    para->channelB = 0;
    std::memset(para->channelNotes, 0, sizeof para->channelNotes);
  }
}

void TSmfData::ChangeTempo(uint32_t microsPerQuarter) {
  double elapsed = static_cast<double>(currentTick_ - lastTempoTick_) * microsPerTick_;
  accumulatedMicros_ = SaturatingAdd(accumulatedMicros_, MicrosToInt(elapsed));
  lastTempoTick_ = currentTick_;
  tempo_ = microsPerQuarter != 0 ? 60000000.0 / microsPerQuarter : HUGE_VAL;
  microsPerTick_ = division_ != 0 ? 60000000.0 / tempo_ / division_ : 0.0;
}

double TSmfData::GetTotalTime(bool headOnly) {
  currentTick_ = -1;
  activeTracks_ = GetTrackCount();
  track1Size_ = tracks_.empty() ? 0 : tracks_[0]->GetDataLength();
  for (auto& track : tracks_) {
    if (!track->PreparePlay()) --activeTracks_;
  }
  if (tracks_.empty()) return 0;
  // A division of 0 gives no time scale: such a file is timed as 0.
  microsPerTick_ = division_ != 0 ? 60000000.0 / tempo_ / division_ : 0.0;

  // Each track is walked on its own: channel messages, which only mark
  // channels, are handled at once, while meta and system exclusive events
  // are noted with their tick and applied afterwards in the order of a walk
  // over all tracks together (by tick, then track), since tempo changes and
  // the later of two declarations depend on that order.
  deferred_.clear();
  deferring_ = true;
  const int64_t step = headOnly ? 1 : INT64_MAX / 4;
  for (int i = 0; i < GetTrackCount(); ++i) {
    TTrackData* track = tracks_[static_cast<size_t>(i)].get();
    if (!track->IsEnded()) track->DecDeltaTime(step, i);
  }
  deferring_ = false;
  std::stable_sort(deferred_.begin(), deferred_.end(),
                   [](const DeferredEvent& a, const DeferredEvent& b) {
                     return a.tick < b.tick || (a.tick == b.tick && a.track < b.track);
                   });
  for (const DeferredEvent& event : deferred_) {
    currentTick_ = event.tick;
    TTrackData* track = tracks_[static_cast<size_t>(event.track)].get();
    track->SetPosition(event.position);
    if (track->GetData()[event.position] == 0xFF) {
      track->MetaEvent(event.track);
    } else {
      track->SysExclusive();
    }
  }
  deferred_.clear();
  // The walk ends at the tick where the last track ended.
  currentTick_ = 0;
  if (!headOnly) {
    for (auto& track : tracks_) currentTick_ = std::max(currentTick_, track->GetEndTick());
  }
  return static_cast<double>(accumulatedMicros_) +
         static_cast<double>(currentTick_ - lastTempoTick_) * microsPerTick_;
}

int TSmfData::GetValue2(const unsigned char* p, unsigned* value) {
  return GetValue2(p, SIZE_MAX, value);
}

int TSmfData::GetValue2(const unsigned char* p, size_t size, unsigned* value) {
  return zansong::ReadQuantity(p, size, value);
}

int TSmfData::GetLengthValue(unsigned value, unsigned char* out) {
  int n = 0;
  out[n++] = static_cast<unsigned char>(value & 0x7F);
  value >>= 7;
  while (value != 0) {
    out[n++] = static_cast<unsigned char>(0x80 | (value & 0x7F));
    value >>= 7;
  }
  return n;
}

int TSmfData::ChangeValue(unsigned value, unsigned char* out) {
  unsigned char reversed[5];
  int n = GetLengthValue(value, reversed);
  for (int i = 0; i < n; ++i) out[i] = reversed[n - 1 - i];
  return n;
}

namespace {

void AppendChunkHeader(std::string& out, const unsigned char* raw, uint32_t length) {
  unsigned char header[8];
  std::memcpy(header, raw, 4);
  header[4] = static_cast<unsigned char>(length >> 24);
  header[5] = static_cast<unsigned char>(length >> 16);
  header[6] = static_cast<unsigned char>(length >> 8);
  header[7] = static_cast<unsigned char>(length);
  out.append(reinterpret_cast<const char*>(header), sizeof header);
}

// The first FF 03 pair of the data, or length when there is none.
uint32_t FindTitleEvent(const unsigned char* data, uint32_t length) {
  for (uint32_t i = 0; i + 1 < length; ++i) {
    if (data[i] == 0xFF && data[i + 1] == 0x03) return i;
  }
  return length;
}

}  // namespace

int TSmfData::ChangeTitle(const char* path, const char* title, bool insert) {
  if (std::memcmp(header_, "MThd", 4) != 0) return 0;
  if (title == nullptr) title = "";
  uint32_t titleLength = static_cast<uint32_t>(std::strlen(title));
  unsigned char vlq[5];
  int vlqLength = ChangeValue(titleLength, vlq);
  std::string event(reinterpret_cast<const char*>(vlq), static_cast<size_t>(vlqLength));
  event.append(title, titleLength);  // length quantity and text

  std::string out(reinterpret_cast<const char*>(header_), sizeof header_);
  bool changed = false;
  for (size_t i = 0; i < tracks_.size(); ++i) {
    const TTrackData& track = *tracks_[i];
    const char* data = reinterpret_cast<const char*>(track.GetData());
    uint32_t length = track.GetDataLength();
    if (insert && i == 0) {
      std::string added = std::string("\x00\xFF\x03", 3) + event;
      AppendChunkHeader(out, track.GetChunkHeader(), length + static_cast<uint32_t>(added.size()));
      out += added;
      out.append(data, length);
      continue;
    }
    uint32_t at = (insert || changed) ? length : FindTitleEvent(track.GetData(), length);
    if (at == length) {
      out.append(reinterpret_cast<const char*>(track.GetChunkHeader()), 8);
      out.append(data, length);
      continue;
    }
    // Replace the old length quantity and text; a quantity or text that
    // runs past the data is taken to end with it.
    uint32_t oldStart = at + 2;
    unsigned oldSize = 0;
    int n = GetValue2(track.GetData() + oldStart, length - oldStart, &oldSize);
    uint32_t oldEnd = length;
    if (n != 0 && oldSize <= length - oldStart - static_cast<uint32_t>(n)) {
      oldEnd = oldStart + static_cast<uint32_t>(n) + oldSize;
    }
    uint32_t newLength = length - (oldEnd - oldStart) + static_cast<uint32_t>(event.size());
    AppendChunkHeader(out, track.GetChunkHeader(), newLength);
    out.append(data, oldStart);
    out += event;
    out.append(data + oldEnd, length - oldEnd);
    changed = true;
  }

  zansong::FileDescriptor fd(::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!fd.valid()) return 0;
  size_t written = 0;
  while (written < out.size()) {
    ssize_t n = ::write(fd.get(), out.data() + written, out.size() - written);
    if (n <= 0) return 0;
    written += static_cast<size_t>(n);
  }
  return 1;
}

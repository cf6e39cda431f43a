// Playing time of RIFF/WAVE files.
#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "common/handles.h"
#include "common/upper_extension.h"
#include "zansong/formats/audio.h"

namespace {

uint32_t Le16(const unsigned char* p) { return p[0] | (static_cast<uint32_t>(p[1]) << 8); }

uint32_t Le32(const unsigned char* p) { return Le16(p) | (Le16(p + 2) << 16); }

bool ReadExactly(int fd, unsigned char* buffer, size_t size) {
  size_t got = 0;
  while (got < size) {
    ssize_t n = ::read(fd, buffer + got, size - got);
    if (n <= 0) return false;
    got += static_cast<size_t>(n);
  }
  return true;
}

bool Skip(int fd, uint32_t size) { return ::lseek(fd, static_cast<off_t>(size), SEEK_CUR) >= 0; }

}  // namespace

int64_t TWaveData::LoadFromFile(const char* path) {
  Clear();
  if (path == nullptr) return 0;
  zansong::FileDescriptor fd(::open(path, O_RDONLY | O_CLOEXEC));
  if (!fd.valid()) return 0;
  unsigned char riff[8];
  unsigned char wave[4];
  if (!ReadExactly(fd.get(), riff, sizeof riff) || std::memcmp(riff, "RIFF", 4) != 0) return 0;
  if (!ReadExactly(fd.get(), wave, sizeof wave) || std::memcmp(wave, "WAVE", 4) != 0) return 0;

  bool haveData = false;
  unsigned char chunk[8];
  while (!haveData && ReadExactly(fd.get(), chunk, sizeof chunk)) {
    uint32_t size = Le32(chunk + 4);
    if (std::memcmp(chunk, "fmt ", 4) == 0) {
      // Fields past what the chunk holds read as 0.
      unsigned char format[18] = {};
      uint32_t take = size < sizeof format ? size : sizeof format;
      if (!ReadExactly(fd.get(), format, take)) break;
      channels_ = static_cast<int32_t>(Le16(format + 2));
      sampleRate_ = static_cast<int32_t>(Le32(format + 4));
      bitsPerSample_ = static_cast<int32_t>(Le16(format + 14));
      // The extension is skipped by its own size field.
      if (size >= 18 && !Skip(fd.get(), Le16(format + 16))) break;
    } else if (std::memcmp(chunk, "data", 4) == 0) {
      dataSize_ = static_cast<int32_t>(size);
      haveData = true;
    } else if (!Skip(fd.get(), size)) {
      break;
    }
  }
  if (!haveData) return 0;

  // A format that gives no time (no channels, less than a byte a sample, no
  // rate) times the file as 0 rather than dividing by zero.
  int64_t bytesPerSample = bitsPerSample_ / 8;
  if (channels_ <= 0 || bytesPerSample <= 0 || sampleRate_ <= 0) return 0;
  int64_t dataBytes = static_cast<uint32_t>(dataSize_);
  return ((dataBytes / channels_) / bytesPerSample) * 1000 / sampleRate_;
}

int TWaveData::SaveToFile(TSString /*path*/) { return 0; }

uint32_t GetAudioTime(const char* path) {
  if (path == nullptr) return 0;
  const TSString ext = zansong::UpperExtension(path);
  if (ext == ".MP3") return 0;
  if (ext != ".WAV") return 0;
  TWaveData wave;
  return static_cast<uint32_t>(wave.LoadFromFile(path));
}

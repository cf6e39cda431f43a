// MPEG audio files: the first frame header, the ID3 version 1 tag, and a
// playing time from the file size and the bitrate.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "common/handles.h"
#include "zansong/formats/audio.h"

namespace {

// Bitrates in kbit/s for indexes 1-14, by version (0 = MPEG-2 low sampling
// frequency, 1 = MPEG-1) and layer code (1 = III, 2 = II, 3 = I).
const int kBitrates[2][3][14] = {
    {
        {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},       // III
        {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},       // II
        {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},  // I
    },
    {
        {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},      // III
        {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},     // II
        {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},  // I
    },
};

// Copies a fixed tag field of size bytes and terminates it.
void CopyField(char* dst, const unsigned char* src, size_t size) {
  std::memcpy(dst, src, size);
  dst[size] = '\0';
}

void SetText(char* dst, size_t capacity, const char* text) {
  size_t n = std::strlen(text);
  if (n > capacity - 1) n = capacity - 1;
  std::memcpy(dst, text, n);
  dst[n] = '\0';
}

}  // namespace

int ReadFileDataMp3(const char* path, ID3TAG* tag, MP3INF* info) {
  if (path == nullptr) return -1;
  zansong::FileDescriptor fd(::open(path, O_RDONLY | O_CLOEXEC));
  if (!fd.valid()) return -1;
  unsigned char header[4] = {};
  if (::read(fd.get(), header, sizeof header) < 0) return -1;
  if (info != nullptr) {
    info->version = (header[1] >> 3) & 1;
    info->layer = (header[1] >> 1) & 3;
    info->bitrate = header[2] >> 4;
    info->samplerate = (header[2] >> 2) & 3;
  }
  if (::lseek(fd.get(), -128, SEEK_END) < 0) return -1;
  unsigned char raw[128] = {};
  size_t got = 0;
  while (got < sizeof raw) {
    ssize_t n = ::read(fd.get(), raw + got, sizeof raw - got);
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  if (tag == nullptr) return 0;
  if (std::memcmp(raw, "TAG", 3) == 0) {
    CopyField(tag->title, raw + 3, 30);
    CopyField(tag->artist, raw + 33, 30);
    CopyField(tag->album, raw + 63, 30);
    CopyField(tag->year, raw + 93, 4);
    CopyField(tag->comment, raw + 97, 30);
    tag->genre = raw[127];
  } else {
    SetText(tag->title, sizeof tag->title, path);
    SetText(tag->artist, sizeof tag->artist, "-?-");
    SetText(tag->album, sizeof tag->album, "-?-");
    SetText(tag->year, sizeof tag->year, "0000");
    SetText(tag->comment, sizeof tag->comment, "-?-");
    tag->genre = 48;
  }
  return 0;
}

int MakePlayTime(int fileSize, MP3INF* info) {
  if (info == nullptr || info->bitrate == 0 || info->layer == 0 || info->bitrate > 14 ||
      info->layer > 3) {
    return 0;
  }
  int kbps = kBitrates[info->version & 1][info->layer - 1][info->bitrate - 1];
  return fileSize / (kbps / 8);
}

int64_t GetFileSize(const char* path) {
  struct stat st;
  if (path == nullptr || ::stat(path, &st) != 0) return 0;
  return static_cast<int64_t>(st.st_size);
}

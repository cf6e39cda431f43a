// Reads a whole file into memory with as few reads as possible.
//
// WholeFile::Load(path) opens the file, takes its size from fstat and reads
// that many bytes (a file that grows meanwhile is read as it was; one that
// shrinks, up to its end).  Returns false when the file cannot be opened,
// read, or the memory cannot be had.  data() is valid until the object goes
// or Release() hands the bytes over to the caller.
#ifndef ZANSONG_SRC_FORMATS_WHOLE_FILE_H_
#define ZANSONG_SRC_FORMATS_WHOLE_FILE_H_

#include <cstddef>
#include <memory>
#include <utility>

namespace zansong {

class WholeFile {
 public:
  WholeFile() = default;
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  bool Load(const char* path);
  const unsigned char* data() const { return data_.get(); }
  size_t size() const { return size_; }
  // The loaded bytes, now owned by the caller; the object is left empty.
  std::unique_ptr<unsigned char[]> Release() {
    size_ = 0;
    return std::move(data_);
  }

 private:
  std::unique_ptr<unsigned char[]> data_;
  size_t size_ = 0;
};

}  // namespace zansong

#endif  // ZANSONG_SRC_FORMATS_WHOLE_FILE_H_

// The upper-cased extension of a file name.
#include "common/upper_extension.h"

#include "zansong/common/path.h"

namespace zansong {

TSString UpperExtension(const TSString& path) {
  TSString ext = ExtractFileExtSX(path);
  ext.UpperCase();
  return ext;
}

}  // namespace zansong

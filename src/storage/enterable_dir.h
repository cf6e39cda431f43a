// Whether a directory can be entered, the test by which the naming rules
// skip names of existing directories.
#ifndef ZANSONG_SRC_STORAGE_ENTERABLE_DIR_H_
#define ZANSONG_SRC_STORAGE_ENTERABLE_DIR_H_

namespace zansong {

// 1 when path names an existing directory that this process may enter
// (search permission), else 0.  Tests a directory without changing the
// working directory.
int IsEnterableDir(const char* path);

}  // namespace zansong

#endif  // ZANSONG_SRC_STORAGE_ENTERABLE_DIR_H_

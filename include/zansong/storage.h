// Storage services: file primitives, song file naming, directory scanning, song packages.
#ifndef ZANSONG_STORAGE_H_
#define ZANSONG_STORAGE_H_

#include "zansong/storage/files.h"

#endif  // ZANSONG_STORAGE_H_

// Storage services: file primitives, song file naming, directory scanning, song packages.
#ifndef ZANSONG_STORAGE_H_
#define ZANSONG_STORAGE_H_

#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"
#include "zansong/storage/package.h"
#include "zansong/storage/scan.h"

#endif  // ZANSONG_STORAGE_H_

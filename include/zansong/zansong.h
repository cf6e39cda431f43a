// zansong: the song-file management library of a self-playing piano's
// controller.  Including this header reaches everything the library
// exports, and the named result codes, message rows and capacity limits;
// each subsystem has its own umbrella header below.
#ifndef ZANSONG_ZANSONG_H_
#define ZANSONG_ZANSONG_H_

#include "zansong/async.h"
#include "zansong/common.h"
#include "zansong/db.h"
#include "zansong/fileman.h"
#include "zansong/formats.h"
#include "zansong/limits.h"
#include "zansong/result_codes.h"
#include "zansong/storage.h"

#endif  // ZANSONG_ZANSONG_H_

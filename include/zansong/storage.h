// Storage services: file primitives, song file naming, directory scanning, song packages.
#ifndef ZANSONG_STORAGE_H_
#define ZANSONG_STORAGE_H_


#endif  // ZANSONG_STORAGE_H_

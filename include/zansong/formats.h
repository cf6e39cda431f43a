// Song file formats: MIDI reader and title rewrite, WAV and MP3 information, piano-disk
// directories.
#ifndef ZANSONG_FORMATS_H_
#define ZANSONG_FORMATS_H_

#include "zansong/formats/audio.h"
#include "zansong/formats/psong.h"
#include "zansong/formats/smf.h"
#include "zansong/formats/title_text.h"

#endif  // ZANSONG_FORMATS_H_

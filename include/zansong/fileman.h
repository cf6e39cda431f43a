// Catalogue operations (FM_*, FH_*) and the user-interface message lines.
#ifndef ZANSONG_FILEMAN_H_
#define ZANSONG_FILEMAN_H_

#include "zansong/fileman/albums.h"
#include "zansong/fileman/copy.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/download.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/order.h"
#include "zansong/fileman/playlists.h"
#include "zansong/fileman/recorded.h"
#include "zansong/fileman/register.h"
#include "zansong/fileman/rename.h"
#include "zansong/fileman/song_count.h"

#endif  // ZANSONG_FILEMAN_H_

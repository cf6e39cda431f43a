// Song catalogue: connection, schema, records and queries, display order.
#ifndef ZANSONG_DB_H_
#define ZANSONG_DB_H_

#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/db/simpledb.h"
#include "zansong/db/songinfo.h"

#endif  // ZANSONG_DB_H_

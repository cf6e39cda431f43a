// Song catalogue: connection, schema, records and queries, display order,
// grouped writes.
#ifndef ZANSONG_DB_H_
#define ZANSONG_DB_H_

#include "zansong/db/dbman.h"
#include "zansong/db/dbsongman.h"
#include "zansong/db/simpledb.h"
#include "zansong/db/songinfo.h"
#include "zansong/db/sqlite_owner.h"
#include "zansong/db/write_batch.h"

#endif  // ZANSONG_DB_H_

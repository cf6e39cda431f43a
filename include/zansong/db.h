// Song catalogue: connection, schema, records and queries, display order.
#ifndef ZANSONG_DB_H_
#define ZANSONG_DB_H_


#endif  // ZANSONG_DB_H_

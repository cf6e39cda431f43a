// ZANSONG_EXPORT marks a name that libzansong.so exports to its host.
//
// The library is built with hidden visibility: a class or function of a
// public header is exported only when its declaration carries the macro,
// and everything else stays inside the library.  Exporting a class exports
// all its member functions but those marked ZANSONG_HIDDEN.  tests/install/
// exported_symbols.txt lists what the library exports; a test fails when
// the two differ, so that an export is always a decision.
#ifndef ZANSONG_EXPORT_H_
#define ZANSONG_EXPORT_H_

#define ZANSONG_EXPORT __attribute__((visibility("default")))

// ZANSONG_HIDDEN keeps a private member function of an exported class out
// of the export, so that it can change without changing the interface.
#define ZANSONG_HIDDEN __attribute__((visibility("hidden")))

#endif  // ZANSONG_EXPORT_H_

// Song package conversion.
//
// A downloaded song arrives as a small XML package that carries the song
// file base64-encoded in a "file" element, with the name under which it is
// stored ("filename" attribute) and an acknowledgement address ("ackurl").
// The decoders write the song file beside the package: output path =
// directory of the package + "/" + file name.  Base64 is decoded by running
// the openssl program (no shell); its exit status, and an output that is not
// empty, are the signs of success.
//
// A file name taken from a package is refused when it is empty, absolute,
// holds a ".." component or a byte below 0x20, or names no file (a "."
// component, a final "/"); the decoder then fails as on a decode error and
// writes nothing.
//
// Working files beside the output: output + ".b64" (the gathered base64
// text) and output + ".bak" (the earlier file of the same name, moved aside
// while decoding and put back when decoding fails).  A failed decode prints
// "base64 error!"; a failed move prints "error!".
#ifndef ZANSONG_STORAGE_PACKAGE_H_
#define ZANSONG_STORAGE_PACKAGE_H_

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

// Decodes the well-formed XML package at path (Expat).  The base64 text is
// the character data of the "file" element (element and attribute names
// compared without regard to case), every byte outside the base64 alphabet
// dropped.  A "filename" with a directory part puts the output below the
// package's directory.  On return name holds the output path ("" on
// failure) and ackurl the acknowledgement address, each copied with strncpy
// when the pointer is not null.  When the package cannot be opened or is not
// well-formed, neither buffer is written.  The ".b64" and ".bak" files are
// left in place.  Returns 0 always.
ZANSONG_EXPORT int FM_ChangeB64ToBin2(const char* path, char* name, int nameLen, char* ackurl,
                                      int ackLen);

// Decodes the line-oriented package at path: "<SELF>" within its first ten
// lines, then a line holding <file filename="NAME"> (spaces ignored, case
// ignored in the tag), then the base64 text up to the next "<".  Only the
// file-name part of NAME is used.  Returns the output path, or "" on
// failure.  On success the ".b64" and ".bak" files are removed.
ZANSONG_EXPORT TSString ChangeB64ToBin(const char* path);
// 1 and the output path copied into out (strncpy, at most len bytes) when
// ChangeB64ToBin succeeded; else 0 and out untouched.
ZANSONG_EXPORT int FM_ChangeB64ToBin(const char* path, char* out, int len);

// Turns a package delivered as an escaped text string back into plain text:
// a backslash escapes the next byte ("\n" gives a line feed, any other byte
// stands for itself), an unescaped double quote is dropped.  The first 512
// bytes must contain "XML" or "SELF" (any case).  The unescaped text is
// written to path + ".tmp", given the package's times, and then the package
// is moved to path + ".bak" and the ".tmp" file to path.
//    0  success (also when a final move fails; that prints "error!");
//   -1  the package cannot be opened or read, holds neither "XML" nor
//       "SELF", a write fails, or fewer or more bytes were read than its
//       size (the package is left unchanged);
//   -3  path + ".tmp" cannot be created.
ZANSONG_EXPORT int ChangeXmlToSelf(const char* path);
ZANSONG_EXPORT int FM_ChangeXmlToSelf(char* path);

// Copies ChangeNoDirAndSpaceName(name) into out (strncpy, at most len
// bytes) when it is not empty; otherwise out is untouched.
ZANSONG_EXPORT void FM_ChangeNoDirAndSpaceName(char* name, char* out, int len);

#endif  // ZANSONG_STORAGE_PACKAGE_H_

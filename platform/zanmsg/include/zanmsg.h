// Message catalogue of the instrument: the text shown for a message key.
//
// msg_getXmlMsg(key) returns a zero-terminated text owned by the library,
// valid for the life of the process.  The empty key gives "", a null key
// gives "", and a key the catalogue does not know gives the key itself.
// The stand-in built here holds the English texts.
#ifndef ZANMSG_H_
#define ZANMSG_H_

#ifdef __cplusplus
extern "C" {
#endif

const char* msg_getXmlMsg(const char* key);

#ifdef __cplusplus
}
#endif

#endif  // ZANMSG_H_

// Generated file contents for tests.
//
// BlockPattern(size) returns size bytes in which no 512-byte block repeats
// the one before it (each byte also depends on its block's number), so that
// a block copied to the wrong place, twice or not at all shows up when the
// result is compared with the original.  The same size always gives the
// same bytes, and a shorter pattern is a prefix of a longer one.
#ifndef ZANSONG_TESTS_SUPPORT_TEST_BYTES_H_
#define ZANSONG_TESTS_SUPPORT_TEST_BYTES_H_

#include <cstddef>
#include <string>

namespace zansong_test {

std::string BlockPattern(size_t size);

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_TEST_BYTES_H_

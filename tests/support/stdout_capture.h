// Captures what the library prints to standard output (its message lines
// and diagnostics) while the object lives.
//
// StdoutCapture c;  ...calls...;  std::string text = c.Finish();
// Finish() flushes stdout, restores the original descriptor and returns
// everything written since construction.  The destructor finishes a
// capture that was not finished.
#ifndef ZANSONG_TESTS_SUPPORT_STDOUT_CAPTURE_H_
#define ZANSONG_TESTS_SUPPORT_STDOUT_CAPTURE_H_

#include <string>

namespace zansong_test {

class StdoutCapture {
 public:
  StdoutCapture();
  ~StdoutCapture();
  StdoutCapture(const StdoutCapture&) = delete;
  StdoutCapture& operator=(const StdoutCapture&) = delete;

  std::string Finish();

 private:
  int saved_fd_ = -1;
  int file_fd_ = -1;
  std::string text_;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_STDOUT_CAPTURE_H_

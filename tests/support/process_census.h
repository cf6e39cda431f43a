// What a process holds that it could leak: its open descriptors and its
// child processes (running or zombie).
//
// OpenDescriptorCount() counts the entries of /proc/self/fd (less the one
// the count itself opens).  HasChildProcesses() is true while this process
// has any child that has not been reaped; it reaps none.
#ifndef ZANSONG_TESTS_SUPPORT_PROCESS_CENSUS_H_
#define ZANSONG_TESTS_SUPPORT_PROCESS_CENSUS_H_

namespace zansong_test {

int OpenDescriptorCount();
bool HasChildProcesses();

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_PROCESS_CENSUS_H_

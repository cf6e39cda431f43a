# zansong_launcher(TARGET VAR): sets VAR to a path that starts the program
# TARGET on the build machine, for scripts and tests that run it by path.
# That is the program itself, or, in a cross-build, a small shell script
# (build dir/launchers/TARGET) that runs it under CMAKE_CROSSCOMPILING_EMULATOR
# with the arguments it was given.  A program of another processor cannot be
# started by path without the kernel's binfmt_misc registration, which a
# container or a fresh CI machine may not allow.
function(zansong_launcher target var)
  if(NOT CMAKE_CROSSCOMPILING OR NOT CMAKE_CROSSCOMPILING_EMULATOR)
    set(${var} $<TARGET_FILE:${target}> PARENT_SCOPE)
    return()
  endif()
  set(words "")
  foreach(word IN LISTS CMAKE_CROSSCOMPILING_EMULATOR)
    string(APPEND words "'${word}' ")
  endforeach()
  set(script ${PROJECT_BINARY_DIR}/launchers/${target})
  file(GENERATE OUTPUT ${script}
    CONTENT "#!/bin/sh\nexec ${words}'$<TARGET_FILE:${target}>' \"$@\"\n"
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                     WORLD_READ WORLD_EXECUTE)
  set(${var} ${script} PARENT_SCOPE)
endfunction()

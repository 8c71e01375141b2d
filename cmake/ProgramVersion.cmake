# cmake -DROOT=... -DVERSION=... -DOUTPUT=... -P ProgramVersion.cmake: writes the source with the
# programs' version, followed by the commit in parentheses where ROOT is a checkout and Git is there.
cmake_minimum_required(VERSION 3.25)
set(text ${VERSION})
if(EXISTS ${ROOT}/.git)
  execute_process(COMMAND git -C ${ROOT} describe --always --dirty "--exclude=*"
                  OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE
                  RESULT_VARIABLE code ERROR_QUIET)
  if(code EQUAL 0)
    string(APPEND text " (${commit})")
  endif()
endif()
# Leaves a file alone that says the same.
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[
#include "apps/Version.h"

namespace kvo {
std::string_view ProgramVersion() { return "@text@"; }
}  // namespace kvo
]] @ONLY)

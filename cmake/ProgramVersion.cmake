# cmake -DROOT=... -DVERSION=... -DOUTPUT=... -P ProgramVersion.cmake: writes the source file with
# the programs' version. Adds the commit in parentheses if ROOT is a checkout and Git is available.
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
# Writes the file only if its content changes.
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[
#include "apps/Version.h"

namespace kvo {
std::string_view ProgramVersion() { return "@text@"; }
}  // namespace kvo
]] @ONLY)

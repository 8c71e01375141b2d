# cmake -DCOMPILER=... -DROOT=... -DGENERATED=... -DSCRATCH=... -P bare_headers.cmake: fails if a
# source or header of the core includes anything but the standard library. The system's include
# folder also contains every other installed library. So this preprocesses the whole core with a
# folder of links in its place, containing only the files that the C++ standard headers include.
cmake_minimum_required(VERSION 3.25)
set(bare ${SCRATCH}/standard-headers)
file(REMOVE_RECURSE ${bare})
foreach(level -O0 -O2) # some headers include more when optimising
  execute_process(
    COMMAND ${COMPILER} -std=c++20 ${level} -M -x c++ ${CMAKE_CURRENT_LIST_DIR}/StandardHeaders.h
    OUTPUT_VARIABLE depends COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "/usr/include/[^ \\\n]+" found "${depends}")
  list(APPEND headers ${found})
endforeach()
list(REMOVE_DUPLICATES headers)
list(FILTER headers EXCLUDE REGEX "^/usr/include/([^/]+/)?c\\+\\+/") # found in folders of their own
foreach(header ${headers})
  string(REPLACE "/usr/include/" "${bare}/" link "${header}")
  get_filename_component(folder "${link}" DIRECTORY)
  file(MAKE_DIRECTORY "${folder}")
  file(CREATE_LINK "${header}" "${link}" SYMBOLIC)
endforeach()

# The compiler's own search folders, without the system's.
execute_process(COMMAND ${COMPILER} -std=c++20 -E -v -x c++ /dev/null
                OUTPUT_QUIET ERROR_VARIABLE verbose)
string(REGEX MATCH "#include <\\.\\.\\.> search starts here:\n(.*)End of search list" _ "${verbose}")
string(REGEX MATCHALL "[^ \n]+" folders "${CMAKE_MATCH_1}")
set(options -nostdinc -nostdinc++ -I${ROOT} -I${GENERATED})
foreach(folder ${folders})
  get_filename_component(folder "${folder}" REALPATH)
  if(folder MATCHES "/c\\+\\+/|/gcc/|/clang/|/lib/llvm")
    list(APPEND options -isystem ${folder})
  endif()
endforeach()
list(APPEND options -isystem ${bare})
if(ARCHITECTURE)
  list(APPEND options -isystem ${bare}/${ARCHITECTURE})
endif()

# preprocess(FILE result-variable error-variable)
function(preprocess file result errors)
  execute_process(COMMAND ${COMPILER} -std=c++20 ${options} -E -x c++ ${file}
                  RESULT_VARIABLE code OUTPUT_QUIET ERROR_VARIABLE said)
  set(${result} ${code} PARENT_SCOPE)
  set(${errors} "${said}" PARENT_SCOPE)
endfunction()

file(GLOB sources ${ROOT}/common/*/*.cpp ${ROOT}/common/*/*.h ${ROOT}/controls/*.cpp
     ${ROOT}/controls/*.h ${ROOT}/pages/*.cpp ${ROOT}/pages/*.h)
list(LENGTH sources count)
if(count LESS 100)
  message(FATAL_ERROR "The core's sources were not found: only ${count}")
endif()
list(TRANSFORM sources REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE everything)
string(CONCAT everything ${everything})
file(WRITE ${SCRATCH}/everything.cpp "${everything}")
preprocess(${SCRATCH}/everything.cpp code errors)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "The core includes more than the standard library:\n${errors}")
endif()

# The standard headers include some system headers; the core itself must not name those.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/StandardHeaders.h standard REGEX "^#include")
# find_foreign_includes(FILE result-variable): finds the #include lines that name neither a standard
# header nor a header of the core.
function(find_foreign_includes file result)
  file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include")
  list(REMOVE_ITEM lines ${standard})
  list(FILTER lines EXCLUDE REGEX "^#include \"(common|controls|pages)/[A-Za-z/]+\\.h\"$")
  set(${result} "${lines}" PARENT_SCOPE)
endfunction()
foreach(source ${sources})
  find_foreign_includes(${source} foreign)
  if(foreign)
    message(FATAL_ERROR "${source} must not contain: ${foreign}")
  endif()
endforeach()

# Tests the check itself: it must report each of these, installed or not.
foreach(header nlohmann/json.hpp CLI/CLI.hpp gtest/gtest.h sqlite3.h pthread_np.h windows.h QString unistd.h)
  file(WRITE ${SCRATCH}/forbidden.cpp "#include <${header}>\n")
  find_foreign_includes(${SCRATCH}/forbidden.cpp foreign)
  preprocess(${SCRATCH}/forbidden.cpp code errors)
  if(NOT foreign OR (code EQUAL 0 AND NOT header STREQUAL "unistd.h"))
    message(FATAL_ERROR "This check does not detect <${header}>")
  endif()
endforeach()

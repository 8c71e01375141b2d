# KVO_BARE_HEADER_OPTIONS: compiler options under which only the standard library's headers can be
# included. The system's include folder also holds every library that happens to be installed, so
# it is replaced by a folder of links to just those files that the C++ standard headers pull in.
set(KVO_BARE_HEADERS ${CMAKE_BINARY_DIR}/standard-headers)

function(kvo_find_standard_headers)
  set(headers)
  foreach(level -O0 -O2) # optimising headers include more
    execute_process(
      COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 ${level} -M -x c++
              ${CMAKE_SOURCE_DIR}/cmake/standard_headers.h
      OUTPUT_VARIABLE depends
      COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "/usr/include/[^ \\\n]+" found "${depends}")
    list(APPEND headers ${found})
  endforeach()
  list(REMOVE_DUPLICATES headers)
  file(REMOVE_RECURSE ${KVO_BARE_HEADERS})
  foreach(header ${headers})
    if(header MATCHES "^/usr/include/(c\\+\\+/|[^/]+/c\\+\\+/)")
      continue() # the C++ headers have folders of their own
    endif()
    string(REPLACE "/usr/include/" "" inside "${header}")
    get_filename_component(folder "${KVO_BARE_HEADERS}/${inside}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    file(CREATE_LINK "${header}" "${KVO_BARE_HEADERS}/${inside}" SYMBOLIC)
  endforeach()

  # What the compiler searches by itself, but for the system's folders.
  execute_process(
    COMMAND ${CMAKE_CXX_COMPILER} -std=c++20 -E -v -x c++ /dev/null
    OUTPUT_QUIET ERROR_VARIABLE verbose)
  string(REGEX MATCH "#include <\\.\\.\\.> search starts here:\n(.*)End of search list" _ "${verbose}")
  string(REGEX MATCHALL "[^ \n]+" folders "${CMAKE_MATCH_1}")
  set(options -nostdinc -nostdinc++)
  foreach(folder ${folders})
    get_filename_component(folder "${folder}" REALPATH)
    if(folder MATCHES "/c\\+\\+/|/gcc/|/clang/|/lib/llvm")
      list(APPEND options "SHELL:-isystem ${folder}")
    endif()
  endforeach()
  list(APPEND options "SHELL:-isystem ${KVO_BARE_HEADERS}")
  list(APPEND options "SHELL:-isystem ${KVO_BARE_HEADERS}/${CMAKE_CXX_LIBRARY_ARCHITECTURE}")
  set(KVO_BARE_HEADER_OPTIONS "${options}" CACHE INTERNAL "")
endfunction()

kvo_find_standard_headers()

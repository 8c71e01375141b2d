# Fails when HEADER can be included under the core's compiler options, and also when a standard
# header can not (then the check itself would say nothing).
string(REPLACE "SHELL:" "" options "${OPTIONS}")
string(REPLACE ";" " " options "${options}")
separate_arguments(options UNIX_COMMAND "${options}")
function(try_include header result)
  execute_process(
    COMMAND sh -c "echo '#include <${header}>' | '${COMPILER}' -std=c++20 \"$@\" -fsyntax-only -x c++ -"
            sh ${options}
    RESULT_VARIABLE code OUTPUT_QUIET ERROR_QUIET)
  set(${result} ${code} PARENT_SCOPE)
endfunction()
try_include(vector standard)
if(NOT standard EQUAL 0)
  message(FATAL_ERROR "the core's options do not even find <vector>")
endif()
try_include(${HEADER} reached)
if(reached EQUAL 0)
  message(FATAL_ERROR "<${HEADER}> can be included from the core")
endif()

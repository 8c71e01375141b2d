# kvo_run_tests(TARGET n [PROPERTY value...]): runs all tests of a GoogleTest program, split across
# n processes; one process per test would spend most of its time starting. Prints nothing for passed
# tests; results/ has the duration of each.
function(kvo_run_tests target shards)
  math(EXPR last "${shards} - 1")
  foreach(shard RANGE ${last})
    set(name ${target}.${shard})
    add_test(NAME ${name} COMMAND ${target} --gtest_brief=1
             --gtest_output=xml:${KVO_RESULTS_PREFIX}${PROJECT_BINARY_DIR}/results/${name}.xml)
    set_tests_properties(${name} PROPERTIES TIMEOUT 900 ${ARGN})
    set_property(TEST ${name} PROPERTY ENVIRONMENT GTEST_TOTAL_SHARDS=${shards}
                                                   GTEST_SHARD_INDEX=${shard})
  endforeach()
endfunction()

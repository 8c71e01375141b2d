# The tests that every desktop passes, for the tests of each.
file(GLOB KVO_DESKTOP_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/desktop/*.cpp)
include(${PROJECT_SOURCE_DIR}/tests/stories/sources.cmake)
list(APPEND KVO_DESKTOP_SOURCES ${KVO_STORY_SOURCES})

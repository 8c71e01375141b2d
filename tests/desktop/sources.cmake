# The tests that every desktop must pass, to be built for each of them.
file(GLOB KVO_DESKTOP_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/desktop/*.cpp)
include(${PROJECT_SOURCE_DIR}/tests/stories/sources.cmake)
list(APPEND KVO_DESKTOP_SOURCES ${KVO_STORY_SOURCES})

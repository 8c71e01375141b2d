# Stories and those who perform them, for the tests of each renderer.
set(KVO_STORY_SOURCES
    ${CMAKE_SOURCE_DIR}/fuzz/PageStory.cpp ${CMAKE_SOURCE_DIR}/fuzz/StoryBag.cpp
    ${CMAKE_SOURCE_DIR}/fuzz/UserEvents.cpp ${CMAKE_SOURCE_DIR}/tests/stories/Comparison.cpp
    ${CMAKE_SOURCE_DIR}/tests/stories/Performance.cpp ${CMAKE_SOURCE_DIR}/tests/stories/Story.cpp)

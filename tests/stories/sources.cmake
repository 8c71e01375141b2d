# Stories and their performers, for the tests of each renderer.
set(KVO_STORY_SOURCES
    ${PROJECT_SOURCE_DIR}/fuzz/PageStory.cpp ${PROJECT_SOURCE_DIR}/fuzz/StoryBag.cpp
    ${PROJECT_SOURCE_DIR}/fuzz/UserEvents.cpp ${PROJECT_SOURCE_DIR}/tests/stories/Comparison.cpp
    ${PROJECT_SOURCE_DIR}/tests/stories/Performance.cpp ${PROJECT_SOURCE_DIR}/tests/stories/Story.cpp)

# The image builder for tests, fuzzers and benchmarks; include this file to use it.
include_guard(GLOBAL)
add_library(tessel_images STATIC ${CMAKE_CURRENT_LIST_DIR}/imageBuilder.cpp
            ${CMAKE_CURRENT_LIST_DIR}/tableBuilder.cpp)
target_link_libraries(tessel_images PUBLIC tessel_options)

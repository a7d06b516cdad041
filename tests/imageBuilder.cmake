# The images that tests and benchmarks work on. Whoever needs them includes this file.
include_guard(GLOBAL)
add_library(tessel_images STATIC ${CMAKE_CURRENT_LIST_DIR}/imageBuilder.cpp)
target_link_libraries(tessel_images PUBLIC tessel_options)

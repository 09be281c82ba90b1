# A folder is a target, and the link graph is the architecture: a floor sees what it links and no more.

add_library(quarn-options INTERFACE)
target_compile_options(quarn-options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Optimised, this compiler warns of lengths and values that its own inlining made up.
  target_compile_options(quarn-options INTERFACE -Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-restrict -Wno-array-bounds)
endif()
if(QUARN_SANITIZE)
  target_compile_options(quarn-options INTERFACE -fsanitize=${QUARN_SANITIZE} -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
  target_link_options(quarn-options INTERFACE -fsanitize=${QUARN_SANITIZE})
endif()

# quarn_floor(<target> FOLDERS <folder>… KNOWS <target>…): a static library of every source in the
# folders; the list is read from the disk, so no file can be forgotten.
function(quarn_floor target)
  cmake_parse_arguments(FLOOR "" "" "FOLDERS;KNOWS" ${ARGN})
  set(sources)
  foreach(folder IN LISTS FLOOR_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.mm)
    list(APPEND sources ${found})
  endforeach()
  add_library(${target} STATIC ${sources})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC quarn-options ${FLOOR_KNOWS})
  target_precompile_headers(${target} PRIVATE <functional> <map> <memory> <optional> <string> <string_view>
                                              <variant> <vector>)
endfunction()

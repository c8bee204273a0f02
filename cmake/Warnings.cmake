# Our own code builds with warnings on and none left; third-party headers are
# included as system headers so that their warnings don't count against us.
function(tarnwick_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wold-style-cast -Wcast-align -Woverloaded-virtual)
endfunction()

# A library made of every .cpp in the given folders (relative to src/). A
# library whose code hasn't been written yet is an interface library, so that
# the targets that will use it can name it already.
function(tarnwick_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;PUBLIC;PRIVATE" ${ARGN})
  set(sources)
  foreach(folder IN LISTS ARG_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    tarnwick_warnings(${name})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} INTERFACE ${ARG_PUBLIC})
  endif()
endfunction()

# Every library offers its users only its own headers. They are staged in the
# build tree, one include root per library (links back to the sources, so an
# edited header needs no copying), and a target reaches the headers of
# exactly the libraries it links. A core file that includes a views header,
# or a header of a library it doesn't depend on, fails to compile; so does a
# core file that includes Qt, whose headers only the views see.
#
# Includes keep their spelling relative to src/ ("platform/x11/X11Connection.h"),
# because each root repeats the folders below src/.
set(TARNWICK_INCLUDE_ROOTS ${PROJECT_BINARY_DIR}/include)

# Stages the headers of FOLDERS (relative to src/) under the root of TARGET and
# returns the root. Only the folder's own headers are staged, not those of its
# subfolders, so the seam's root doesn't show the backends below it.
function(tarnwick_stage_headers target root_var)
  set(root ${TARNWICK_INCLUDE_ROOTS}/${target})
  file(REMOVE_RECURSE ${root})
  foreach(folder IN LISTS ARGN)
    file(MAKE_DIRECTORY ${root}/${folder})
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.h
                                        ${PROJECT_SOURCE_DIR}/src/${folder}/*.inc)
    foreach(header IN LISTS headers)
      get_filename_component(name ${header} NAME)
      file(CREATE_LINK ${header} ${root}/${folder}/${name} SYMBOLIC)
    endforeach()
  endforeach()
  set(${root_var} ${root} PARENT_SCOPE)
endfunction()

# A library made of every .cpp in the given folders (relative to src/),
# offering the headers of those folders. A library whose code hasn't been
# written yet is an interface library, so that the targets that will use it
# can name it already.
function(tarnwick_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;PUBLIC;PRIVATE" ${ARGN})
  set(sources)
  foreach(folder IN LISTS ARG_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
    list(APPEND sources ${found})
  endforeach()
  tarnwick_stage_headers(${name} root ${ARG_FOLDERS})
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${root})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    tarnwick_warnings(${name})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${root})
    target_link_libraries(${name} INTERFACE ${ARG_PUBLIC})
  endif()
endfunction()

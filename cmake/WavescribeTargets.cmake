# The three kinds of target in this project. Every one sees headers as "folder/file.h" from the root.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

function(wavescribe_options target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    -Wno-sign-conversion $<$<BOOL:${WAVESCRIBE_WERROR}>:-Werror>)
endfunction()

# wavescribe_library(name SOURCES a.cpp ... LINKS other ...): a folder of the program.
function(wavescribe_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  wavescribe_options(${name})
  target_link_libraries(${name} PUBLIC ${ARG_LINKS})
endfunction()

# wavescribe_headers(name LINKS other ...): a folder that holds only headers.
function(wavescribe_headers name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  add_library(${name} INTERFACE)
  target_include_directories(${name} INTERFACE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} INTERFACE ${ARG_LINKS})
endfunction()

# wavescribe_program(name SOURCES a.cpp ... LINKS other ...): something a person starts.
function(wavescribe_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  wavescribe_options(${name})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS})
endfunction()

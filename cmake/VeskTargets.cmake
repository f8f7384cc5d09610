# What all of Vesk's own targets share: warnings, which are errors, and the sanitizer of the preset in use.

set(VESK_SANITIZE "" CACHE STRING "Sanitizers of this build, as -fsanitize takes them")

add_library(vesk_flags INTERFACE)
target_compile_options(vesk_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wundef -Wimplicit-fallthrough -Werror)
if(VESK_SANITIZE)
  target_compile_options(vesk_flags INTERFACE -fsanitize=${VESK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vesk_flags INTERFACE -fsanitize=${VESK_SANITIZE})
  target_compile_definitions(vesk_flags INTERFACE VESK_SANITIZED)
endif()

# One layer of Vesk: a static library that knows the layers it names and no others.
#   vesk_layer(core SOURCES a.cpp ... USES platform ... PRIVATE_USES Qt6::Core ...)
function(vesk_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  add_library(vesk_${name} STATIC ${LAYER_SOURCES})
  target_include_directories(vesk_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(vesk_${name} PUBLIC ${LAYER_USES} PRIVATE vesk_flags ${LAYER_PRIVATE_USES})
endfunction()

# Stands in for what a Mac has and this machine does not; see toolchain.cmake.

# What Qt finds besides itself.
foreach(name IN ITEMS WrapOpenGL::WrapOpenGL WrapVulkanHeaders::WrapVulkanHeaders)
  add_library(${name} INTERFACE IMPORTED GLOBAL)
endforeach()
# All of /usr/include would bring in Linux's own headers: the few that are needed stand in VESK_DARWIN_INCLUDE.
list(APPEND CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)

# Qt's own libraries are those of this machine, so no program can be linked: lint/macos/symbols.py does what a linker
# would find out. A program's place in the bundle is taken by an empty one.
set(CMAKE_CXX_LINK_EXECUTABLE "\"$ENV{VESK_ZIG}\" cc -target aarch64-macos.$ENV{VESK_DARWIN_VERSION} -g0 \
\"${CMAKE_CURRENT_LIST_DIR}/dry_run/main.c\" -o <TARGET>")
# A Mac's programs do not run here; the one that the build itself runs draws the icon.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/dry_run/draw_icons)
# macdeployqt and codesign leave behind what they were called for.
set(MACDEPLOYQT_EXECUTABLE ${CMAKE_CURRENT_LIST_DIR}/dry_run/macdeployqt CACHE FILEPATH "")
install(CODE "set(CMAKE_PROGRAM_PATH \"${CMAKE_CURRENT_LIST_DIR}/dry_run\")")

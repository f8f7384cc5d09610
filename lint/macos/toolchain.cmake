# Configures Vesk's own build for a Mac, on Linux: lint/macos/run.sh gives this to CMake. The compiler brings Darwin's C
# and C++ headers and no framework; VESK_ZIG names it.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_CXX_COMPILER $ENV{VESK_ZIG} c++)
# Nobody runs what comes out: no debugging information, no checks built in.
set(CMAKE_CXX_FLAGS_INIT "-target aarch64-macos.$ENV{VESK_DARWIN_VERSION} -g0 -fno-sanitize=all \
-isystem \"${CMAKE_CURRENT_LIST_DIR}/stubs\" -isystem \"$ENV{VESK_DARWIN_INCLUDE}\"")
# The compiler knows its system's place by itself.
set(CMAKE_OSX_SYSROOT "" CACHE STRING "")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# Qt's programs (moc, qmlcachegen, the import scanner) are those of this machine, and its CMake files are every
# system's.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
# What Qt's files for a Mac ask for beside the compiler: frameworks, which are not here.
set(CMAKE_PROJECT_Vesk_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/frameworks.cmake)

# Compiler settings and the one helper that declares one of our libraries.

find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers carry a time stamp; these are the settings ccache asks for to look past it.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
               CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Wno-missing-field-initializers -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-fpch-preprocess)
else()
  # <xcb/xkb.h> has members called "explicit": the word is a macro while that header is read.
  add_compile_options(-Wextra-semi -Wunreachable-code -Wconditional-uninitialized -Wloop-analysis -Wheader-hygiene
                      -Wunused-member-function -Wunused-template -Wsuggest-override -Wno-keyword-macro)
endif()
if(QUILLMARK_HARDENED)
  # Without -fcf-protection: Debian 12 starts programs with code that lacks it, so none is marked as having it.
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" configuration)
  if(CMAKE_CXX_FLAGS_${configuration} MATCHES "-O[1-3s]")  # the C library warns where nothing is optimised
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
  endif()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
add_link_options(-fuse-ld=lld -Wl,--as-needed)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(nlohmann_json REQUIRED)
pkg_check_modules(sigcpp REQUIRED IMPORTED_TARGET sigc++-3.0)
pkg_check_modules(icu REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(uuid REQUIRED IMPORTED_TARGET uuid)
pkg_check_modules(sqlite REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(curl REQUIRED IMPORTED_TARGET libcurl)
pkg_check_modules(systemd REQUIRED IMPORTED_TARGET libsystemd)
pkg_check_modules(xcb REQUIRED IMPORTED_TARGET
                  xcb xcb-xtest xcb-xkb xcb-randr xcb-xinput xcb-ewmh xcb-keysyms xcb-xfixes xkbcommon xkbcommon-x11)
pkg_check_modules(hunspell REQUIRED IMPORTED_TARGET hunspell)
find_package(Qt6 REQUIRED COMPONENTS Widgets DBus Svg)

# quillmark_library(NAME <target> [LINK <targets>...] [QT]): a static library of all sources of the current folder, with
# the house's include root and a precompiled header. LINK says what it may include of the house; `./dev lint` checks the
# same rule. With QT it gets the toolkit and the toolkit's precompiled header.
function(quillmark_library)
  cmake_parse_arguments(lib "QT" "NAME" "LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")  # of the program that stands on this library
  add_library(${lib_NAME} STATIC ${sources})
  target_include_directories(${lib_NAME} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${lib_NAME} PUBLIC ${lib_LINK})
  if(lib_QT)
    target_compile_definitions(${lib_NAME} PUBLIC QT_NO_KEYWORDS)
    target_link_libraries(${lib_NAME} PUBLIC Qt6::Widgets)
    if(lib_NAME STREQUAL "desktop")
      target_precompile_headers(${lib_NAME} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled_qt.h)
    else()
      target_precompile_headers(${lib_NAME} REUSE_FROM desktop)
    endif()
  elseif(lib_NAME STREQUAL "base")
    target_precompile_headers(${lib_NAME} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled.h)
  else()
    target_precompile_headers(${lib_NAME} REUSE_FROM base)
  endif()
endfunction()

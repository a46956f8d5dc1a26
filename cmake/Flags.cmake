# Compiler and linker settings shared by every target of the project.

set(WEBMGMT_WARNINGS -Wno-psabi -Wall -Wextra -Werror -Wshadow -Wformat=2 -Wno-format-nonliteral -Wvla)
add_compile_options(${WEBMGMT_WARNINGS})

if(WEBMGMT_SANITIZE)
  # vptr checking needs RTTI, which the library is built without.
  set(WEBMGMT_SAN_FLAGS -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
  add_compile_options(${WEBMGMT_SAN_FLAGS})
  add_link_options(${WEBMGMT_SAN_FLAGS})
endif()

# GCC 12 at -O3 (the Release build) reports two warnings inside libstdc++ that are false for
# the plain std::string and std::vector code of the tests: -Wrestrict on operator+ with a
# literal (GCC bugs 105329 and 105651) and -Wmaybe-uninitialized on the clean-up of a table
# of test cases that builds strings in place. Only the test programs go without the first,
# and only the sources named after the target without the second; the library, the tools
# and the examples keep every warning, and every other build keeps both.
function(webmgmt_test_flags target)
  if(NOT (CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
          AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13))
    return()
  endif()
  target_compile_options(${target} PRIVATE
    $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CONFIG:Release>>:-Wno-restrict>)
  if(ARGN)
    set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS
      $<$<CONFIG:Release>:-Wno-maybe-uninitialized>)
  endif()
endfunction()

# The library: C++ without its runtime. Linking through the C driver with -z defs makes
# any stray use of libstdc++ (operator new, a throwing helper, RTTI) fail at link time.
function(webmgmt_library_flags target)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-asynchronous-unwind-tables>
    -fvisibility=hidden -fvisibility-inlines-hidden -fno-semantic-interposition
    -ffunction-sections -fdata-sections)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  if(NOT WEBMGMT_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-z,defs -static-libgcc -Wl,--as-needed)
  endif()
endfunction()

# Less work for the dynamic loader in every CGI process: calls between the library's own
# functions bind inside the library (no PLT stub, no symbol lookup, fewer relocations), and
# relative relocations are packed where the linker and C library know the packed form.
# Only functions: the exported variables (bb_applet_name ...) may be copied into the program,
# whose copy the library must then use. Measured with bench/run.
# A linker that has no packed form for the target only warns that it ignores the option
# (the 32-bit ARM one does): that warning counts as a failure.
include(CheckCSourceCompiles)
set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-z,pack-relative-relocs)
check_c_source_compiles("int main(void) { return 0; }" WEBMGMT_HAVE_PACKED_RELR
  FAIL_REGEX "pack-relative-relocs ignored")
unset(CMAKE_REQUIRED_LINK_OPTIONS)
# bench/run installs the two libraries side by side in one directory and names each by its
# path there (its soname), so that they are opened without a search of a run path, as the
# device's loader finds them in its library directory through its cache.
set(WEBMGMT_SONAME_DIR "" CACHE PATH "name the shared libraries by their paths in this directory")
function(webmgmt_shared_link_flags target)
  if(WEBMGMT_SONAME_DIR)
    set_target_properties(${target} PROPERTIES NO_SONAME ON)
    target_link_options(${target} PRIVATE
      "-Wl,-soname,${WEBMGMT_SONAME_DIR}/$<TARGET_FILE_NAME:${target}>")
  endif()
  if(NOT WEBMGMT_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions -Wl,-O1 -nostartfiles
      -Wl,--gc-sections)
    if(WEBMGMT_HAVE_PACKED_RELR)
      target_link_options(${target} PRIVATE -Wl,-z,pack-relative-relocs)
    endif()
  endif()
endfunction()

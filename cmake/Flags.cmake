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

# The library: C++ without its runtime. Linking through the C driver with -z defs makes
# any stray use of libstdc++ (operator new, a throwing helper, RTTI) fail at link time.
function(webmgmt_library_flags target)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-asynchronous-unwind-tables>
    -fvisibility=hidden -fvisibility-inlines-hidden)
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  if(NOT WEBMGMT_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,-z,defs -static-libgcc -Wl,--as-needed)
  endif()
endfunction()

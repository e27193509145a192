# What every target of the project shares: the language level, the warnings, the
# strictness of floating point, and the include root.

# Headers are included as <kvarta16/room/Class.h>, in the build as when installed.
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/include")
file(CREATE_LINK "${CMAKE_SOURCE_DIR}/src" "${CMAKE_BINARY_DIR}/include/kvarta16" SYMBOLIC)

function(kvarta16_target_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${CMAKE_BINARY_DIR}/include>"
                                              "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  # Money rules are stated step by step in Double: a fused multiply-add would skip a rounding.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion
                                           $<$<BOOL:${KVARTA16_WERROR}>:-Werror>
                                           -ffp-contract=off
                                           # GCC takes an enumerator of a scoped enum for a shadow.
                                           "$<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>")
endfunction()

# What the image of a program says of itself and is protected by, and that it is the same wherever and whenever it is
# built. docs/compilacao.md says what this compiler has no part of.

# No time in the header, no folder of this machine in what a source says of its own place.
target_link_options(zu_opcoes INTERFACE -Wl,--no-insert-timestamp)
target_compile_options(zu_opcoes INTERFACE $<$<COMPILE_LANGUAGE:CXX>:
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=.>)

# Windows 10 or later, where the program was made for it: aware of sessions, at an address that nobody knows before, with
# no data that can run. The last three are this linker's defaults; an older one's are not.
target_link_options(zu_opcoes INTERFACE
    -Wl,--major-os-version=10,--minor-os-version=0,--major-subsystem-version=10,--minor-subsystem-version=0
    -Wl,--tsaware,--dynamicbase,--high-entropy-va,--nxcompat)

# Functions with arrays prove on their return that nothing has written past these. The option is not for the linker: it
# would bring the compiler's library, in whose place zu_pilha stands.
target_compile_options(zu_opcoes INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fstack-protector-strong>)
add_library(zu_pilha STATIC core/pilha.cpp)
target_link_libraries(zu_pilha PRIVATE zu_opcoes)
target_link_libraries(zu_opcoes INTERFACE zu_pilha)

# What makes a fault harder to use against whoever runs a program: guarded stacks, checked copies,
# places in memory that differ from start to start, tables that are read-only once they are filled.
# tools/check-binaries reads from the programs whether all of it is there.
include(CheckPIESupported)

# The sanitizers look for the same faults, and closer.
if(NOT OSTREL_SANITIZE)
  add_compile_options(-fstack-protector-strong)
  # Needs optimisation; ostrel_test() takes it back. Some compilers define it themselves.
  add_compile_options(-U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug,None>>:-D_FORTIFY_SOURCE=2>)
endif()

if(WIN32)
  # Addresses of 32 bits have no high entropy. libssp.a is linked into the program like all else.
  add_link_options(-Wl,--dynamicbase,--nxcompat -fstack-protector-strong)
else()
  if(NOT OSTREL_SANITIZE)
    check_pie_supported()
    set(CMAKE_POSITION_INDEPENDENT_CODE ON)
    add_compile_options(-fstack-clash-protection)
  endif()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

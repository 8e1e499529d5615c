# cambioip_module(<name> SOURCES <files...> [DEPS <modules or libraries...>])
# Builds src/<name> as a static library whose public header is <name>/<name>.h.
function(cambioip_module nombre)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_library(${nombre} STATIC ${ARG_SOURCES})
  target_include_directories(${nombre} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  if(ARG_DEPS)
    target_link_libraries(${nombre} PUBLIC ${ARG_DEPS})
  endif()
endfunction()

# cambioip_test(<name> SOURCES <files...> [DEPS <modules...>] [LABELS <labels...>])
# A GoogleTest executable registered with CTest. Every test knows where the real
# CGI executable and the fixture documents are. The label "stress" keeps a test out of
# make test; make stress runs it.
function(cambioip_test nombre)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS;LABELS" ${ARGN})
  add_executable(${nombre} ${ARG_SOURCES})
  target_link_libraries(${nombre} PRIVATE ${ARG_DEPS} cambioip_testsupport GTest::gtest GTest::gtest_main)
  gtest_discover_tests(${nombre} TEST_PREFIX "${nombre}." DISCOVERY_TIMEOUT 60
    PROPERTIES ENVIRONMENT "CAMBIOIP_LOAD_PAUSE_MS=0" LABELS "${ARG_LABELS}")
endfunction()

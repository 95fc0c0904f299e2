# The rk4 program dialling rk4-modemsim on a real pseudo-terminal: the call,
# the transfers through it, the hang-up, and calls that fail.
if(TARGET rk4-modemsim)
  add_executable(rk4_cli_modemsim_tests ${CMAKE_CURRENT_LIST_DIR}/cli_modemsim_test.cpp)
  target_link_libraries(rk4_cli_modemsim_tests PRIVATE rk4testsupport GTest::gtest_main)
  target_compile_definitions(rk4_cli_modemsim_tests PRIVATE RK4_MODEMSIM="$<TARGET_FILE:rk4-modemsim>"
                                                             RK4_PROGRAM="$<TARGET_FILE:rk4>")
  add_dependencies(rk4_cli_modemsim_tests rk4-modemsim rk4)
  add_test(NAME cli_modemsim COMMAND rk4_cli_modemsim_tests)
  set_tests_properties(cli_modemsim PROPERTIES TIMEOUT 180)
endif()

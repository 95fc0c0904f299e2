# The rk4 program against rk4-unitsim on a real pseudo-terminal: whole
# transfers with the real clock, with and without injected faults.
if(TARGET rk4-unitsim)
  add_executable(rk4_cli_unitsim_tests ${CMAKE_CURRENT_LIST_DIR}/cli_unitsim_test.cpp)
  target_link_libraries(rk4_cli_unitsim_tests PRIVATE rk4testsupport GTest::gtest_main)
  target_compile_definitions(rk4_cli_unitsim_tests PRIVATE RK4_UNITSIM="$<TARGET_FILE:rk4-unitsim>"
                                                            RK4_PROGRAM="$<TARGET_FILE:rk4>")
  add_dependencies(rk4_cli_unitsim_tests rk4-unitsim rk4)
  # Separate entries so that ctest -j can run them side by side.
  add_test(NAME cli_unitsim_clean COMMAND rk4_cli_unitsim_tests --gtest_filter=*Clean*)
  add_test(NAME cli_unitsim_faults COMMAND rk4_cli_unitsim_tests --gtest_filter=*Fault*)
  add_test(NAME cli_unitsim_interrupt COMMAND rk4_cli_unitsim_tests --gtest_filter=*Interrupted*)
  set_tests_properties(cli_unitsim_clean cli_unitsim_faults cli_unitsim_interrupt PROPERTIES TIMEOUT 120)
endif()

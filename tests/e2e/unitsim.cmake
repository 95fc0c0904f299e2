# The link against rk4-unitsim on a real pseudo-terminal.
if(TARGET rk4-unitsim)
  add_executable(rk4_unitsim_tests ${CMAKE_CURRENT_LIST_DIR}/unitsim_test.cpp)
  target_link_libraries(rk4_unitsim_tests PRIVATE rk4testsupport GTest::gtest_main)
  target_compile_definitions(rk4_unitsim_tests PRIVATE RK4_UNITSIM="$<TARGET_FILE:rk4-unitsim>")
  add_dependencies(rk4_unitsim_tests rk4-unitsim)
  add_test(NAME unitsim COMMAND rk4_unitsim_tests)
  set_tests_properties(unitsim PROPERTIES TIMEOUT 120)
endif()

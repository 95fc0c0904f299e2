# rk4 cell against rk4-cellsim on a real pseudo-terminal at the module's pace:
# one command a second, so each entry runs for tens of seconds.
if(TARGET rk4-cellsim)
  add_executable(rk4_cellsim_tests ${CMAKE_CURRENT_LIST_DIR}/cli_cellsim_test.cpp)
  target_link_libraries(rk4_cellsim_tests PRIVATE rk4cli rk4testsupport GTest::gtest_main)
  target_compile_definitions(rk4_cellsim_tests PRIVATE RK4_CELLSIM="$<TARGET_FILE:rk4-cellsim>")
  add_dependencies(rk4_cellsim_tests rk4-cellsim)
  # Separate entries so that ctest -j runs them side by side.
  add_test(NAME cellsim_clean COMMAND rk4_cellsim_tests --gtest_filter=*Clean*)
  add_test(NAME cellsim_faults COMMAND rk4_cellsim_tests --gtest_filter=*Fault*)
  set_tests_properties(cellsim_clean cellsim_faults PROPERTIES TIMEOUT 180)
  # The window on the same line, driven by its own timer.
  if(TARGET rk4gui)
    add_executable(rk4_gui_cellsim_tests ${CMAKE_CURRENT_LIST_DIR}/gui_cellsim_test.cpp
                                         ${CMAKE_CURRENT_LIST_DIR}/../gui/main.cpp)
    target_link_libraries(rk4_gui_cellsim_tests PRIVATE rk4gui rk4testsupport Qt6::Test GTest::gtest)
    target_compile_definitions(rk4_gui_cellsim_tests PRIVATE RK4_CELLSIM="$<TARGET_FILE:rk4-cellsim>")
    add_dependencies(rk4_gui_cellsim_tests rk4-cellsim)
    add_test(NAME cellsim_window COMMAND rk4_gui_cellsim_tests)
    set_tests_properties(cellsim_window PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen" TIMEOUT 240)
  endif()
endif()

# rk4 read and rk4 new killed with SIGKILL at 200 random moments each: the
# target is always the old configuration or the new one, never a torn file,
# and what a kill leaves beside it goes with the next save.
add_test(NAME kill_loop COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/kill-loop $<TARGET_FILE:rk4> 200)
set_tests_properties(kill_loop PROPERTIES TIMEOUT 120)

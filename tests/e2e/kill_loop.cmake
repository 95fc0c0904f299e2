# rk4 read and rk4 new killed with SIGKILL at random moments: the target is
# always the old configuration or the new one, never a torn file, and what a
# kill leaves beside it goes with the next save. The suite runs 30 kills of
# each (a sanitized rk4 on a busy machine takes a quarter of a second a run);
# `scripts/kill-loop` alone runs 200 of each.
add_test(NAME kill_loop COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/kill-loop $<TARGET_FILE:rk4> 30)
set_tests_properties(kill_loop PROPERTIES TIMEOUT 120)

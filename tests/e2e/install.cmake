# The desktop integration: installing puts the programs, the desktop entry,
# the MIME type for *.dat and the icon where a desktop finds them.
if(RK4_BUILD_GUI)
  add_test(NAME install
           COMMAND bash ${CMAKE_CURRENT_SOURCE_DIR}/e2e/check_install.sh ${CMAKE_BINARY_DIR})
  set_tests_properties(install PROPERTIES TIMEOUT 120)
endif()

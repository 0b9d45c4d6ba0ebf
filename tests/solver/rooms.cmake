# SPDX-License-Identifier: BSD-3-Clause
# The solver's rooms one by one: equilibration, matching, one front, assembly, the whole factorisation.
add_executable(solver_room_tests
    ${CMAKE_CURRENT_LIST_DIR}/extend_add_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/factorisation_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/front_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/matching_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/scaling_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/sparse_matrix_test.cpp)
target_link_libraries(solver_room_tests PRIVATE test_support bla_solver ZEFTOVBlaModule)
gtest_discover_tests(solver_room_tests TEST_PREFIX "solver.rooms." DISCOVERY_TIMEOUT 60)

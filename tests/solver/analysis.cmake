# SPDX-License-Identifier: BSD-3-Clause
# Order of elimination, elimination tree, fronts.
find_package(Threads REQUIRED)
add_executable(solver_analysis_tests
    ${CMAKE_CURRENT_LIST_DIR}/tree_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fronts_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/order_test.cpp)
target_link_libraries(solver_analysis_tests PRIVATE test_support bla_solver ZEFTOVBlaModule Threads::Threads)
gtest_discover_tests(solver_analysis_tests TEST_PREFIX "solver." DISCOVERY_TIMEOUT 60)

add_executable(solver_out_of_memory ${CMAKE_CURRENT_LIST_DIR}/out_of_memory.cpp)
target_link_libraries(solver_out_of_memory PRIVATE bla_flags bla_solver)
add_test(NAME solver.out_of_memory COMMAND solver_out_of_memory)
set_tests_properties(solver.out_of_memory PROPERTIES SKIP_RETURN_CODE 77)

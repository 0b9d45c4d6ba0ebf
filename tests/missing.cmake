# SPDX-License-Identifier: BSD-3-Clause
# The list of tests is the same everywhere: one whose tool, compiler or library is missing is registered all the same and
# reports itself as skipped. Test `missing.list_of_tests` holds this against a configuration without tools.

# add_skipped_tests(REASON name...)
function(add_skipped_tests reason)
    foreach(name ${ARGN})
        add_test(NAME ${name} COMMAND sh -c "echo \"skipped: $0\"; exit 77" ${reason})
        set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
    endforeach()
endfunction()

# SPDX-License-Identifier: BSD-3-Clause
# Each library brings a file of its own, because a distribution may have it in a package of its own.
file(GLOB _bla_targets ${CMAKE_CURRENT_LIST_DIR}/*Targets.cmake)
foreach(_bla_file IN LISTS _bla_targets)
    include(${_bla_file})
endforeach()
unset(_bla_file)
unset(_bla_targets)

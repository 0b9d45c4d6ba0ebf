# SPDX-License-Identifier: BSD-3-Clause
# cmake -DPROGRAM=path -DNAME=name -DPURPOSE=text -DVERSION=x.y.z -DOUTPUT=file -P program_man.cmake
# A program's man page: its --help, word for word.
execute_process(COMMAND ${PROGRAM} --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\\\\" "\\\\\\\\" help "${help}")
string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" help "${help}")
string(REPLACE "-" "\\-" help "${help}")
string(REGEX REPLACE "\n+$" "" help "${help}")
file(WRITE ${OUTPUT} ".TH ${NAME} 1 \"\" \"ZEFTOVBlaModule ${VERSION}\"
.SH NAME
${NAME} \\- ${PURPOSE}
.SH DESCRIPTION
.nf
${help}
.fi
")

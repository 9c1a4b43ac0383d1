# Makes the man page zekl(1) from the tool's own help texts, so that it says what --help says:
# help2man turns 'zekl --help' into the synopsis, description and options, and the help of
# every command becomes a section COMMANDS. The page is written gzip-compressed when gzip is
# there, as Debian ships man pages.
#
#   cmake -DZEKL=<tool> -DHELP2MAN=<help2man> -DVERSION=<version> -DOUTPUT=<dir>/zekl.1
#         [-DGZIP=<gzip>] -P ManPage.cmake
foreach(variable ZEKL HELP2MAN VERSION OUTPUT)
  if(NOT ${variable})
    message(FATAL_ERROR "ManPage.cmake needs -D${variable}=...")
  endif()
endforeach()

execute_process(COMMAND ${ZEKL} --help OUTPUT_VARIABLE overall RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "'${ZEKL} --help' failed (${status})")
endif()

# The commands are the lines "  <name>  <summary>" under "Commands:".
string(REPLACE ";" "\\;" overall "${overall}")
string(REPLACE "\n" ";" lines "${overall}")
set(commands)
set(inside FALSE)
foreach(line IN LISTS lines)
  if(line STREQUAL "Commands:")
    set(inside TRUE)
  elseif(inside AND line MATCHES "^  ([a-z]+)  ")
    list(APPEND commands ${CMAKE_MATCH_1})
  elseif(inside)
    break()
  endif()
endforeach()
if(NOT commands)
  message(FATAL_ERROR "no commands found in 'zekl --help'")
endif()

# Each command's help, as it prints it, in a no-fill block.
set(include "[COMMANDS]\nEvery command takes \\fB\\-\\-help\\fR; 'zekl help COMMAND' prints the same.\n")
foreach(command IN LISTS commands)
  execute_process(COMMAND ${ZEKL} help ${command} OUTPUT_VARIABLE help RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "'${ZEKL} help ${command}' failed (${status})")
  endif()
  string(REPLACE "\\" "\\e" help "${help}")
  string(REPLACE "-" "\\-" help "${help}")
  # A line that starts with a dot or a quote would be taken for a request.
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" help "${help}")
  string(APPEND include ".SS \"zekl ${command}\"\n.nf\n${help}.fi\n")
endforeach()
string(APPEND include "[SEE ALSO]\nThe README of the sources, and docs/json.md for the output of \\fB\\-\\-json\\fR.\n")
file(WRITE ${OUTPUT}.include "${include}")

execute_process(
  COMMAND ${HELP2MAN} --no-info --section=1 --version-string=${VERSION}
          "--name=inspect, check and convert diagnostic descriptions of ECUs"
          --include=${OUTPUT}.include --output=${OUTPUT} ${ZEKL}
  RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "help2man failed (${status})")
endif()

if(GZIP)
  execute_process(COMMAND ${GZIP} -9nf ${OUTPUT} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "gzip failed (${status})")
  endif()
endif()

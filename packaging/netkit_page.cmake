# PAGE is the man page SOURCE with what NETKIT says of its subcommands.
execute_process(COMMAND ${NETKIT} manual OUTPUT_VARIABLE subcommands COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${subcommands}" SUBCOMMANDS)
configure_file(${SOURCE} ${PAGE} @ONLY)

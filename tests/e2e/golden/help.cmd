# The help lists every command and marks what is not available yet.
--help

# bringup takes no arguments.
bringup extra
exit 2

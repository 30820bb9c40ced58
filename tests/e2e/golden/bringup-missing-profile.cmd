# An unreadable profile names the file.
--switch no/such.switch bringup
exit 2

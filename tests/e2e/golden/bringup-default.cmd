# The bring-up report of the built-in switch: the hidden entries the back-end leaves in the chips.
bringup

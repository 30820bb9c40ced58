# A second configuration that keeps the first and adds a list on a new port is applied as a
# change of the first.
apply tests/e2e/inputs/small.acl tests/e2e/inputs/small-plus.acl

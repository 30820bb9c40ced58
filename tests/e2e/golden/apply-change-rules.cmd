# A second configuration that changes a bound list and adds a binding: the list is applied
# again, the new port joins.
apply tests/e2e/inputs/small.acl tests/e2e/inputs/small-changed.acl

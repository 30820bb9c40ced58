# A configuration without ACLs after one with: everything is torn down, every slice, range
# checker and class is free again.
apply tests/e2e/inputs/small.acl tests/e2e/inputs/empty.acl

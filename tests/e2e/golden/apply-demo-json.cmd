# apply --json: the same state as one object.
apply --json examples/acls/demo.acl

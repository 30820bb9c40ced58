# apply reads the example configuration, then says what this build lacks.
apply examples/acls/demo.acl
exit 4

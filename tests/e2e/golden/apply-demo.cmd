# apply: the demo configuration on the default switch, per unit: each ACL, the TCAM groups
# with their slices, range checkers, classes, and the rules expanded into masked blocks.
apply examples/acls/demo.acl

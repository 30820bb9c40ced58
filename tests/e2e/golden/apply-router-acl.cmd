# A router ACL on a VLAN interface is not served in this build: refused, exit 4.
apply tests/e2e/inputs/router-acl.acl
exit 4

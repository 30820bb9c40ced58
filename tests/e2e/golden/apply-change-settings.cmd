# The hardware settings may not change while ACLs stand in this build: refused, exit 4,
# nothing programmed.
apply tests/e2e/inputs/small.acl tests/e2e/inputs/small-settings.acl
exit 4

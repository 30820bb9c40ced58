# A second configuration that changes a bound list needs teardown, which this build lacks:
# refused before anything is programmed, exit 4.
apply tests/e2e/inputs/small.acl tests/e2e/inputs/small-changed.acl
exit 4

# A configuration error: FILE:LINE: on stderr, exit 2, nothing programmed.
apply tests/e2e/inputs/reversed-range.acl
exit 2

# A configuration error: FILE:LINE: on stderr, exit 2, nothing programmed.
apply tests/e2e/inputs/mac-without-mask.acl
exit 2

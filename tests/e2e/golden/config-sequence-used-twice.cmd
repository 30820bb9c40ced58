# A configuration error: FILE:LINE: on stderr, exit 2, nothing programmed.
apply tests/e2e/inputs/sequence-used-twice.acl
exit 2

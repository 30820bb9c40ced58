# A configuration error: FILE:LINE: on stderr, exit 2, nothing programmed.
apply tests/e2e/inputs/ipv4-in-ipv6-list.acl
exit 2

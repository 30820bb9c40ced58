# replay reads every input before it programs anything, and reports each bad one.
replay tests/e2e/inputs/reversed-range.acl tests/e2e/inputs/bad-ttl.jsonl
exit 2

# replay --json --check: an object per packet, then the summary.
replay --json --check examples/acls/demo.acl examples/packets/demo.jsonl

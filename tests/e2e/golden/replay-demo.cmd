# replay --check: a line per packet with the rule each ACL hit, every packet checked against
# the reference evaluator, hits per rule at the end.
replay --check examples/acls/demo.acl examples/packets/demo.jsonl

# replay after a change of configuration: the packets meet the changed lists.
replay --check tests/e2e/inputs/small.acl tests/e2e/inputs/small-changed.acl tests/e2e/inputs/small.jsonl

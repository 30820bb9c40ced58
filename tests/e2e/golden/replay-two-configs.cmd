# replay after two configurations: the packets meet the second, the check uses it.
replay --check tests/e2e/inputs/small.acl tests/e2e/inputs/small-plus.acl tests/e2e/inputs/small.jsonl

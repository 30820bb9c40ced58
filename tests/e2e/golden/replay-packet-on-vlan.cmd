# A packet arrives on a port: one that names a VLAN interface as its ingress is an input error.
replay tests/e2e/inputs/small.acl tests/e2e/inputs/packet-on-vlan.jsonl
exit 2

# --in names an interface of the switch.
replay --in Ethernet99 examples/acls/demo.acl tests/e2e/inputs/two-frames.pcap
exit 2

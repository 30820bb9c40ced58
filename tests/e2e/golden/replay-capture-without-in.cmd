# A capture needs --in: its frames carry no interfaces.
replay examples/acls/demo.acl tests/e2e/inputs/two-frames.pcap
exit 2

# A capture read with --in and --out: its frames meet the ACLs of those interfaces.
replay --in Ethernet1 --out Ethernet25 examples/acls/demo.acl tests/e2e/inputs/two-frames.pcap

# A capture read with --in and --out; then what this build lacks.
replay --in Ethernet1 --out Ethernet25 examples/acls/demo.acl tests/e2e/inputs/two-frames.pcap
exit 4

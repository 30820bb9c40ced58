# replay reads the configuration and the packets, then says what this build lacks.
replay --check examples/acls/demo.acl examples/packets/demo.jsonl
exit 4

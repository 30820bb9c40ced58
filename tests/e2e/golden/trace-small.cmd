# trace: the field-processor commands of programming, per unit.
trace tests/e2e/inputs/small.acl

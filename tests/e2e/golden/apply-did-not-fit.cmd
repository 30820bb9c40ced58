# An egress list whose ranges cost hundreds of entries a rule fits the default switch but not
# a switch with one EFP slice per unit: exit 3, with the reason per unit.
--switch tests/e2e/inputs/one-efp-slice.switch apply tests/e2e/inputs/wide-ranges-out.acl
exit 3

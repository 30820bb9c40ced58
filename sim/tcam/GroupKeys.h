// The key set of each TCAM group: the qualifiers its key holds, whether its entries take
// InPorts, range checkers and user-defined field data, and the actions of its stage. A real
// SDK refuses a field outside a group's qualifier set with its parameter error; so does the
// simulated chip (KeySet in sim/chip/ChipTypes.h), so that a back-end that writes a field into
// the wrong group stops in tests as it would on a chip.
//
// Each set is what the ACL back-end writes into the group: the scope of its entries (ports,
// classes, VLANs), the match fields of the rules it serves (MAC, IPv4, IPv6, VNI), the
// compressed class forms of the exported field setters in the ingress groups, and the hidden
// entries' fields in the management and port-blocking groups. By stage:
//   - InPorts only in VFP and IFP; OutPort only in EFP; ClassSourceSet only in VFP, where only
//     the cancel of a CPU copy comes beside it; EFP entries only drop.
//   - IPv6 address forms only in IPv6 groups, and in VFP only the upper 64 bits (the full
//     source form too in the narrow-key VFP group, where the back-end writes it).
//   - IPv4 addresses only in IPv4 groups; MAC addresses only in MAC groups, and the destination
//     MAC in the ingress IP groups, where the class-or-MAC destination setters fall back to it
//     (the compressed class forms of those setters stand in every ingress IP group).
//   - Range checkers only in the ingress IP groups; user-defined fields only in the ingress
//     groups of IPv4 and MAC security ACLs.
// The mirroring and uRPF exception groups serve ACLs of several types, and take the union.
#pragma once

#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipTypes.h"

namespace Sim {

// The key set of the group of `a` in `stage` (the stage of its row in the group table).
KeySet groupKeySet( Halyard::TcamGroupAssignment a, Stage stage );

}  // namespace Sim

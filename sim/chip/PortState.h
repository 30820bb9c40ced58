// Per-port and per-VLAN state of one simulated chip, as the SDK's port and VLAN calls leave it.
//
// Contract:
//   1. Ports are 0 .. portCount-1 and VLANs 0 .. 4095; every operation on anything else answers
//      Status::NotFound (writes) or nullopt (reads) and changes nothing.
//   2. Unset state reads as the chip's reset value: classes 0, STP Forward, egress mask all
//      ports; port-table fields and port controls never written read as nullopt.
//   3. The lookup reads the port classes, STP state, egress masks and VLAN classes on every
//      packet; port-table fields and port controls are kept for read-back only, since the model
//      has no VLAN membership to filter on and takes port classes from this state directly.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

// The module id that `egressMaskIs` takes to mean "every module".
inline constexpr S32 kAllModules = -1;

class ChipPorts {
 public:
   ChipPorts( U32 portCount, S32 localModule );

   U32 portCount() const { return static_cast<U32>( ports_.size() ); }
   bool valid( U32 port ) const { return port < ports_.size(); }
   const PortBitmap& allPorts() const { return allPorts_; }

   Status portClassIs( U32 port, PortClassKind kind, U32 cls );
   std::optional<U32> portClass( U32 port, PortClassKind kind ) const {
      return valid( port ) ? std::optional<U32>( ports_[port].classes[std::size_t( kind )] )
                           : std::nullopt;
   }

   Status stpStateIs( U32 port, StpState state );
   std::optional<StpState> stpState( U32 port ) const {
      return valid( port ) ? std::optional<StpState>( ports_[port].stp ) : std::nullopt;
   }

   // One field of the port's row in a chip table, named by the caller's table and field ids.
   Status portTableFieldIs( U32 port, U32 table, U32 field, U32 value );
   std::optional<U32> portTableField( U32 port, U32 table, U32 field ) const;

   // The ports that packets arriving on `port` from module `module` may leave by.
   // kAllModules sets the mask for every module, replacing masks set per module.
   Status egressMaskIs( U32 port, S32 module, const PortBitmap& mask );
   std::optional<PortBitmap> egressMask( U32 port, S32 module ) const;
   // The mask that applies to packets of this chip's own module; REQUIRES: valid( port ).
   const PortBitmap& localEgressMask( U32 port ) const;

   Status portControlIs( U32 port, U32 control, S32 value );
   std::optional<S32> portControl( U32 port, U32 control ) const;

 private:
   struct Port {
      std::array<U32, kPortClassKinds> classes{};
      StpState stp = StpState::Forward;
      std::map<std::pair<U32, U32>, U32> tableFields;
      std::map<S32, PortBitmap> egressMasks;  // by module; kAllModules is the default
      std::map<U32, S32> controls;
   };
   const PortBitmap& maskFor( const Port& p, S32 module ) const;

   std::vector<Port> ports_;
   PortBitmap allPorts_;
   S32 localModule_;
};

class ChipVlans {
 public:
   static constexpr U32 kVlanCount = 4096;

   // The L2 class (InterfaceClassL2), the ingress L3 interface class (InterfaceClassL3) and the
   // class of the VLAN's L3 interface as an egress interface (EgressClassL3Interface).
   Status l2ClassIs( U32 vlan, U32 cls );
   Status l3ClassIs( U32 vlan, U32 cls );
   Status egressL3ClassIs( U32 vlan, U32 cls );
   std::optional<U32> l2Class( U32 vlan ) const {
      return vlan < kVlanCount ? std::optional<U32>( vlans_[vlan].l2Class ) : std::nullopt;
   }
   std::optional<U32> l3Class( U32 vlan ) const {
      return vlan < kVlanCount ? std::optional<U32>( vlans_[vlan].l3Class ) : std::nullopt;
   }
   std::optional<U32> egressL3Class( U32 vlan ) const {
      return vlan < kVlanCount ? std::optional<U32>( vlans_[vlan].egressL3Class ) : std::nullopt;
   }

 private:
   struct Vlan {
      U32 l2Class = 0;
      U32 l3Class = 0;
      U32 egressL3Class = 0;
   };
   std::array<Vlan, kVlanCount> vlans_{};
};

}  // namespace Sim

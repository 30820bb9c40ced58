// The name of an interface of the switch, as one compact value.
//
// Kinds and their text:
//   front-panel port    "Ethernet1", "Ethernet1/1" (port 1, lane 1)
//   port-channel        "Port-Channel5"
//   VLAN interface      "Vlan100"
//   sub-interface       "Ethernet1.100", "Ethernet1/1.100", "Port-Channel5.10"
// and the null interface, "", the default value.
//
// Numbers: ports, lanes, port-channels and sub-interface numbers run from 1
// to 65535; VLANs from 1 to 4094. Bad text throws Vesper::ParseException
// naming the accepted forms; a number out of range from the factories
// throws Vesper::RangeException.
//
// Ordering is by kind (null, Ethernet, Port-Channel, Vlan), then number,
// lane and sub-interface number, so that "Ethernet2" sorts before
// "Ethernet10" and a sub-interface right after its parent.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/pylon/VlanId.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class IntfId {
 public:
   enum class Kind : U8 { null = 0, ethernet = 1, portChannel = 2, vlan = 3 };

   static constexpr U32 maxNumber = 0xFFFF;

   constexpr IntfId() = default;
   static IntfId ethernet( U32 port, U32 lane = 0 );
   static IntfId portChannel( U32 number );
   static IntfId vlan( VlanId vlan );
   // The sub-interface `subId` of this port or port-channel.
   // REQUIRES: isEthernet() || isPortChannel().
   IntfId subIntf( U32 subId ) const;

   constexpr Kind kind() const { return static_cast<Kind>( value_ >> 48 ); }
   constexpr bool isNull() const { return value_ == 0; }
   constexpr bool isEthernet() const { return kind() == Kind::ethernet && !isSubIntf(); }
   constexpr bool isPortChannel() const { return kind() == Kind::portChannel && !isSubIntf(); }
   constexpr bool isVlan() const { return kind() == Kind::vlan; }
   constexpr bool isSubIntf() const { return subIntfId() != 0; }
   constexpr bool isEthernetSubIntf() const { return kind() == Kind::ethernet && isSubIntf(); }
   constexpr bool isPortChannelSubIntf() const {
      return kind() == Kind::portChannel && isSubIntf();
   }

   // Port, port-channel or VLAN number.
   constexpr U32 number() const { return static_cast<U16>( value_ >> 32 ); }
   // Lane of a front-panel port; 0 when the name has none.
   constexpr U32 lane() const { return static_cast<U16>( value_ >> 16 ); }
   // Sub-interface number; 0 when this is no sub-interface.
   constexpr U32 subIntfId() const { return static_cast<U16>( value_ ); }
   // The port or port-channel of a sub-interface; any other interface itself.
   constexpr IntfId parent() const { return IntfId( value_ & ~U64( 0xFFFF ) ); }

   // The packed form: kind, number, lane, sub-interface number, 16 bits each.
   constexpr U64 value() const { return value_; }
   U32 hash() const;

   friend constexpr bool operator==( IntfId, IntfId ) = default;
   friend constexpr auto operator<=>( IntfId, IntfId ) = default;

 private:
   constexpr explicit IntfId( U64 value ) : value_( value ) {}
   static IntfId make( Kind kind, U32 number, U32 lane, U32 subId );

   U64 value_ = 0;
};

// The test by which VLAN interfaces are told from other interfaces.
struct VlanIntfId {
   static constexpr bool isVlanIntfId( IntfId intf ) { return intf.isVlan(); }
};

std::string valueToStrep( IntfId intf );
IntfId parseStrep( std::string_view text, ValueType<IntfId> );
std::ostream& operator<<( std::ostream& os, IntfId intf );

}  // namespace Pylon

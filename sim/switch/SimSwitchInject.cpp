// SimSwitch::inject: from interface names to a lookup on the right chips.
//
// Ingress, by the kind of interface:
//   EthernetN          its port; the packet keeps its VLAN.
//   Port-ChannelN      its first member's port (the model has no LAG hashing).
//   EthernetN.S, ...   its parent's port; the packet is in the sub-interface's VLAN, tagged
//                      with it unless it already carries a tag.
//   VlanV              its first member's port, in VLAN V.
// Egress:
//   EthernetN, Port-ChannelN   that port (a port-channel's first member).
//   a sub-interface            its parent's port, leaving in its VLAN: routed.
//   VlanV                      its first member port other than the ingress port, leaving in
//                              VLAN V; routed when the packet came in another VLAN.
//   none                       the packet's own egress ports, ports of the ingress unit: none
//                              unless the caller set them (forwarding chose no destination).
// A routed flag the packet already carries stays set.
#include <sstream>
#include <string>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Exception.h"
#include "sim/switch/SimSwitch.h"

namespace Sim {

namespace {

using Pylon::IntfId;

IntfId intfNamed( std::string_view name ) {
   return Pylon::strepToValue<IntfId>( name );
}

[[noreturn]] void unknown( IntfId intf, const char* why ) {
   throw Vesper::RangeException( Pylon::valueToStrep( intf ) + " " + why );
}

}  // namespace

SwitchVerdict SimSwitch::inject( std::string_view ingressName, Packet p,
                                 std::string_view egressName ) {
   const IntfId in = intfNamed( ingressName );
   if ( !profile_.intfHas( in ) ) {
      unknown( in, "is not an interface of this switch" );
   }
   IntfId inPortIntf = in;
   if ( in.isVlan() ) {
      inPortIntf = profile_.vlans().at( static_cast<U16>( in.number() ) ).front();
      p.vlanIs( static_cast<U16>( in.number() ) );
   } else if ( in.isSubIntf() ) {
      const U16 vlan = profile_.subIntfs().at( in );
      if ( p.outerTag ) {
         p.vlanIs( vlan );
      } else {
         p.taggedIs( vlan );
      }
   }
   const HalyardPort from = *portOf( inPortIntf );

   std::optional<HalyardPort> to;
   if ( !egressName.empty() ) {
      const IntfId out = intfNamed( egressName );
      if ( !profile_.intfHas( out ) ) {
         unknown( out, "is not an interface of this switch" );
      }
      if ( out.isVlan() ) {
         const U16 vlan = static_cast<U16>( out.number() );
         for ( IntfId member : profile_.vlans().at( vlan ) ) {
            if ( *portOf( member ) != from ) {
               to = portOf( member );
               break;
            }
         }
         if ( !to ) {
            unknown( out, "has no member port other than the ingress port" );
         }
         p.routed = p.routed || p.vlan != vlan;
         p.egressVlanIs( vlan );
      } else {
         to = portOf( out );
         if ( out.isSubIntf() ) {
            p.egressVlanIs( profile_.subIntfs().at( out ) );
            p.routedIs( true );
         }
      }
   }

   SwitchVerdict v;
   v.ingressUnit = from.unit();
   p.ingressPortIs( from.port() );
   ChipModel& ingressChip = chip( from.unit() );
   if ( !to || to->unit() == from.unit() ) {
      if ( to ) {
         p.egressPortIs( to->port() );
      }
      v.ingress = ingressChip.lookup( p );
      v.ingress.egressPorts.forEach(
          [&]( U32 port ) { v.delivered.push_back( HalyardPort( from.unit(), port ) ); } );
      return v;
   }

   // Bound for another unit: out by this unit's link port, in by the other's.
   const U32 outLink = portLayout( from.unit() ).linkPorts.front();
   v.egressUnit = to->unit();
   v.ingress = ingressChip.lookup( p.egressPortIs( outLink ) );
   if ( !v.ingress.egressPorts.test( outLink ) ) {
      return v;
   }
   Packet q = p;
   q.ingressPortIs( portLayout( to->unit() ).linkPorts.front() );
   q.higigIs( true );
   q.toCpuIs( false );  // a copy forwarding sent to the CPU went on the ingress unit
   q.egressPortIs( to->port() );
   v.egress = chip( to->unit() ).lookup( q );
   v.egress->egressPorts.forEach(
       [&]( U32 port ) { v.delivered.push_back( HalyardPort( to->unit(), port ) ); } );
   return v;
}

bool SwitchVerdict::dropped() const {
   if ( ingress.dropped || ( egress && egress->dropped ) ) {
      return true;
   }
   const bool egressDrop = ingress.egressDropped.any() || ( egress && egress->egressDropped.any() );
   return egressDrop && delivered.empty();
}

std::string SwitchVerdict::text() const {
   std::ostringstream out;
   out << "unit " << ingressUnit << ": " << ingress.text();
   if ( egressUnit ) {
      out << "; unit " << *egressUnit << ": " << ( egress ? egress->text() : "not reached" );
   }
   out << "; delivered:";
   for ( HalyardTypes::HalyardPort port : delivered ) {
      out << " " << port.unit() << "/" << port.port();
   }
   return out.str();
}

}  // namespace Sim

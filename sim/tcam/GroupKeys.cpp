// The key set of each group, built from what the back-end writes into it.
#include "sim/tcam/GroupKeys.h"

#include <initializer_list>

namespace Sim {

namespace {

using namespace Halyard;
using Q = QualId;

void add( KeySet& k, std::initializer_list<QualId> quals ) {
   for ( QualId q : quals ) {
      k.quals.set( static_cast<std::size_t>( q ) );
   }
}

void allow( KeySet& k, std::initializer_list<ActionId> actions ) {
   for ( ActionId a : actions ) {
      k.actions.set( static_cast<std::size_t>( a ) );
   }
}

// VFP entries mark the packet with a source class (and may cancel a CPU copy, which setActions
// adds to any ingress entry asked to); only IFP entries set the others; EFP entries only drop.
void stageActions( KeySet& k, Stage s ) {
   switch ( s ) {
      case Stage::Vfp:
         allow( k,
                { ActionId::ClassSourceSet, ActionId::SwitchToCpuCancel, ActionId::CosQCpuNew } );
         break;
      case Stage::Ifp:
         k.actions.set();
         k.actions.reset( static_cast<std::size_t>( ActionId::ClassSourceSet ) );
         break;
      case Stage::Efp:
         allow( k, { ActionId::Drop } );
         break;
   }
}

// The scope of a port ACL's entry: a port bitmap, the skip class and the VFP marks in IFP; the
// port's class in VFP; one port, or the port's class, in EFP.
void portScope( KeySet& k, Stage s ) {
   switch ( s ) {
      case Stage::Vfp:
         k.inPorts = true;
         add( k, { Q::InterfaceClassPort } );
         break;
      case Stage::Ifp:
         k.inPorts = true;
         add( k, { Q::DstClassL2, Q::SrcClassField } );
         break;
      case Stage::Efp:
         add( k, { Q::OutPort, Q::InterfaceClassPort } );
         break;
   }
}

// The scope of a router ACL's entry: the shared identifier or the VLAN, routed traffic only.
void routerScope( KeySet& k, Stage s ) {
   if ( s == Stage::Efp ) {
      add( k, { Q::OuterVlanId, Q::ForwardingVlanId, Q::EgressClassL3Interface, Q::HiGig,
                Q::OutPort } );
      return;
   }
   k.inPorts = true;
   add( k, { Q::InterfaceClassL3, Q::OuterVlanId, Q::L3Routable, Q::MyStationHit } );
}

void macFields( KeySet& k ) {
   add( k, { Q::EtherType, Q::SrcMac, Q::DstMac } );
}

void ipFields( KeySet& k ) {
   add( k, { Q::IpType, Q::IpProtocol, Q::L4SrcPort, Q::L4DstPort, Q::TcpControl, Q::OuterVlanId,
             Q::IpFrag } );
}

// Protocol 141 is matched as an extension header on ingress only.
void ipv4Fields( KeySet& k, Stage s ) {
   ipFields( k );
   add( k, { Q::SrcIp, Q::DstIp, Q::Dscp, Q::Ttl } );
   if ( s != Stage::Efp ) {
      add( k, { Q::ExtensionHeaderType } );
   }
}

// A VFP entry matches the upper 64 bits of an address only; the narrow-key VFP group also
// takes the whole source form, which the back-end writes there.
void ipv6Fields( KeySet& k, Stage s, bool narrowKey ) {
   ipFields( k );
   add( k, { Q::Ip6TrafficClass, Q::Ip6HopLimit, Q::SrcIp6High, Q::DstIp6High } );
   if ( s != Stage::Vfp ) {
      add( k, { Q::SrcIp6, Q::DstIp6 } );
   } else if ( narrowKey ) {
      add( k, { Q::SrcIp6 } );
   }
}

// What an ingress IP group takes beyond the rule's fields: range checkers, and the compressed
// class forms that the exported field setters write, with the destination MAC they fall back
// to. The destination classes are classes, not addresses: the setters are the agent's, for
// groups that the back-end does not name, and either family's class may stand in either key.
void ingressIpExtras( KeySet& k ) {
   k.rangeChecks = true;
   add( k,
        { Q::EtherType, Q::EtherTypeClass, Q::IpProtocolClass, Q::L4SrcPortClass, Q::L4DstPortClass,
          Q::DstClassField, Q::DstIpClassMsbNibble, Q::DstIp6ClassMsbNibble, Q::DstMac } );
}

KeySet hiddenEntries( TcamGroupAssignment a ) {
   KeySet k;
   stageActions( k, Stage::Ifp );
   k.inPorts = true;
   add( k, { Q::DstClassL2 } );
   if ( a == tcamGroupAclMgmt ) {
      add( k, { Q::IngressStpState, Q::SrcClassField, Q::InterfaceClassL2, Q::MyStationHit,
                Q::L3Routable } );
   }
   return k;
}

}  // namespace

KeySet groupKeySet( TcamGroupAssignment a, Stage s ) {
   if ( isBoundedAssignment( a ) ) {
      return hiddenEntries( a );
   }
   KeySet k;
   stageActions( k, s );
   const bool ifp = s == Stage::Ifp;
   switch ( a ) {
      case tcamGroupMacAcl:
      case tcamGroupMacAclVfp:
      case tcamGroupMacAclEgress:
         portScope( k, s );
         macFields( k );
         if ( ifp ) {
            add( k, { Q::EtherTypeClass } );
            k.udf = true;
         }
         return k;
      case tcamGroupIpAcl:
      case tcamGroupIpAclVfp:
      case tcamGroupIpAclEgress:
      case tcamGroupIpAclVni:
      case tcamGroupRouterAcl:
      case tcamGroupRouterAclEgress: {
         const bool router = a == tcamGroupRouterAcl || a == tcamGroupRouterAclEgress;
         if ( router ) {
            routerScope( k, s );
         } else {
            portScope( k, s );
         }
         ipv4Fields( k, s );
         if ( a == tcamGroupIpAclVni ) {
            add( k, { Q::VxlanNetworkId } );
         }
         if ( ifp ) {
            ingressIpExtras( k );
            k.udf = true;
         }
         return k;
      }
      case tcamGroupIp6Acl:
      case tcamGroupIp6AclVfp:
      case tcamGroupIp6AclEgress:
      case tcamGroupIp6AclVni:
      case tcamGroupIp6StdAcl:
      case tcamGroupIp6StdAclVfp:
      case tcamGroupIp6StdAclPortEgress:
      case tcamGroupIp6RouterAcl:
      case tcamGroupIp6RouterAclEgress:
      case tcamGroupIp6StdAclRouterEgress: {
         const bool router = a == tcamGroupIp6RouterAcl || a == tcamGroupIp6RouterAclEgress ||
                             a == tcamGroupIp6StdAclRouterEgress;
         // On ingress one narrow-key group serves port and router ACLs alike.
         const bool both = a == tcamGroupIp6StdAcl;
         if ( !router || both ) {
            portScope( k, s );
         }
         if ( router || both ) {
            routerScope( k, s );
         }
         ipv6Fields( k, s, a == tcamGroupIp6StdAclVfp );
         if ( a == tcamGroupIp6AclVni ) {
            add( k, { Q::VxlanNetworkId } );
         }
         if ( ifp ) {
            ingressIpExtras( k );
         }
         return k;
      }
      case tcamGroupUrpfTHxV4ExceptionAcl:
      case tcamGroupUrpfTHxV4V6ExceptionAcl:
      case tcamGroupMirroringAcl1:
      case tcamGroupMirroringAcl2:
      case tcamGroupMirroringAcl3:
      case tcamGroupMirroringAcl4:
         // One group for the ACLs of a feature, port or router, of the types it serves.
         portScope( k, s );
         routerScope( k, s );
         ipv4Fields( k, s );
         if ( a != tcamGroupUrpfTHxV4ExceptionAcl ) {
            ipv6Fields( k, s, false );
         }
         if ( a != tcamGroupUrpfTHxV4ExceptionAcl && a != tcamGroupUrpfTHxV4V6ExceptionAcl ) {
            macFields( k );
         }
         k.rangeChecks = ifp;
         return k;
      default:
         return KeySet::all();
   }
}

}  // namespace Sim

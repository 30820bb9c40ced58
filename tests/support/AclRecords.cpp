#include "tests/support/AclRecords.h"

#include <cstdio>
#include <cstdlib>

#include "platform/fennel/AclKey.h"
#include "platform/fennel/AclVlanIdOrNone.h"

namespace HalyardTest {

Fennel::AclData::Ptr aclDataOf( const std::string& name, Acl::AclType type,
                                Acl::AclDirection direction, U16 vlan, bool standard ) {
   return Fennel::aclDataFactory(
       Fennel::AclKey( name, type, direction, standard, Fennel::AclVlanIdOrNone( vlan ) ) );
}

MacTerm macHost( const Pylon::EthAddr& addr ) {
   return MacTerm{ addr, kMacMaskAll };
}

Acl::RuleConfig macRule( const MacRuleSpec& spec ) {
   Acl::MacFilter filter;
   if ( spec.source ) {
      filter.sourceIs( spec.source->addr, spec.source->mask );
   }
   if ( spec.destination ) {
      filter.destinationIs( spec.destination->addr, spec.destination->mask );
   }
   filter.protoIs( spec.etherType );
   Acl::MacRuleConfig rule( filter );
   rule.actionIs( spec.action );
   rule.logIs( spec.log );
   rule.seqNoIs( spec.seqNo );
   rule.uniqueIdIs( Acl::UniqueId::next() );
   return Acl::RuleConfig( rule );
}

Sim::MacAddr simMac( const Pylon::EthAddr& addr ) {
   return addr.bytes();
}

Pylon::EthAddr ethAddr( const Sim::MacAddr& addr ) {
   return Pylon::EthAddr( addr );
}

void bindPort( const Halyard::AclHelper::Ptr& helper, const Fennel::AclData::Ptr& aclData,
               Pylon::IntfId intf ) {
   if ( !helper->hcsd()->halyardIntfToPortHas( intf ) ) {
      std::fprintf( stderr, "bindPort: the switch has no port for the interface\n" );
      std::abort();
   }
   const HalyardTypes::HalyardPort port = helper->hcsd()->halyardIntfToPort( intf );
   const Halyard::HalyardAclData::Ptr saclData = helper->halyardAclDataIs( aclData->key() );
   for ( const auto& member : helper->hcsd()->halyardModId() ) {
      const U32 unit = member.key();
      const Halyard::AclUnitData::Ptr unitData =
          saclData->unitDataIs( unit, aclData->aclType(), aclData->direction(), helper.ptr() );
      helper->createCommonUnitData( unitData );
      if ( unit == port.unit() ) {
         unitData->activePortIs( port.port() );
      }
   }
   aclData->activeIntfIs( intf, true );
}

}  // namespace HalyardTest

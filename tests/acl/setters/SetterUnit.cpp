#include "tests/acl/setters/SetterUnit.h"

#include "sim/tcam/SimTcamEntryManager.h"
#include "tests/support/SwitchLayout.h"

namespace AclSettersTest {

namespace {

using HalyardCentral::ChipAttribute;

constexpr std::string_view dualClass = "dualclass";

Sim::ChipKind dualClassKind() {
   Sim::ChipKind k = HalyardTest::customKind( "trident3", std::string( dualClass ), 1 );
   k.attributeBits |= 1u << static_cast<U32>( ChipAttribute::supportsIfpDstClassField );
   return k;
}

HalyardTest::AgentOptions optionsFor( std::string_view kindName ) {
   HalyardTest::AgentOptions options = HalyardTest::notBroughtUp();
   if ( kindName == dualClass ) {
      options.sim.unitKinds[SetterUnit::unit] = dualClassKind();
   }
   return options;
}

HalyardTest::SwitchLayout layoutFor( std::string_view kindName ) {
   return HalyardTest::SwitchLayout(
       { kindName == dualClass ? std::string( "trident3" ) : std::string( kindName ) } );
}

}  // namespace

std::vector<std::string> chipKindNames() {
   std::vector<std::string> names = HalyardTest::catalogKindNames();
   names.push_back( std::string( dualClass ) );
   return names;
}

SetterUnit::SetterUnit( std::string_view kindName )
    : AgentSwitch( layoutFor( kindName ), optionsFor( kindName ) ) {}

U32 SetterUnit::newEntry( Halyard::TcamGroupAssignment a ) {
   return groupMgr()->unboundedEntryManager( a )->getEntry( unit, "setters test entry" );
}

Sim::GroupId SetterUnit::groupOf( U32 entry ) const {
   return chip().entryGroup( entry ).value_or( 0 );
}

void SetterUnit::install( U32 entry ) {
   groupMgr()->tcamEntryMgr( entry )->installEntry( unit, entry );
}

bcm_pbmp_t SetterUnit::portKey( U32 entry ) const {
   return groupMgr()->tcamEntryMgr( entry )->tcamEntryBcmPbmp( unit, entry );
}

bool SetterUnit::portKeyPermanent( U32 entry ) const {
   auto manager = Vesper::ptrDynamicCast<Sim::SimUnboundedTcamEntryManager>(
       groupMgr()->tcamEntryMgr( entry ) );
   return manager && manager->tcamEntryBcmPbmpPermanent( unit, entry );
}

}  // namespace AclSettersTest

#include "tests/acl/bringup/BringupSwitch.h"

#include <cstdlib>

#include "acl/HalyardAclSmBringupInternal.h"
#include "acl/ToggleState.h"
#include "platform/vesper/Ptr.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/tcam/GroupTable.h"

namespace AclBringupTest {

namespace {

Sim::SwitchProfile profileOf( const SwitchLayout& layout ) {
   Sim::SwitchProfile profile;
   profile.nameIs( "bringup" );
   Sim::SwitchFlags flags;
   flags.fabric = layout.fabric;
   flags.egressFilterPerPort = layout.egressFilterPerPort;
   profile.flagsIs( flags );
   U32 unit = 0;
   for ( const std::string& kind : layout.kinds ) {
      Sim::UnitDef u;
      u.unit = unit;
      u.kind = kind;
      u.module = static_cast<U16>( unit + 1 );
      profile.unitIs( u );
      for ( U32 port = 1; port <= BringupSwitch::frontPanelPorts; ++port ) {
         profile.ethernetIs( unit * 100 + port, unit, port );
      }
      ++unit;
   }
   return profile;
}

Sim::StageCapacity capacityOf( const Sim::StageSlices& slices ) {
   const U32 count = slices.slices();
   return Sim::StageCapacity{ count, count ? slices.totalNarrow() / count : 0 };
}

// The switch's own group table unless groups are to be missing; then the first unit's kind
// sizes the groups that stay.
Sim::SwitchOptions optionsOf( const SwitchLayout& layout ) {
   Sim::SwitchOptions options;
   if ( !layout.missingGroups.empty() ) {
      const Sim::ChipKind* kind = Sim::chipKindByName( layout.kinds.front() );
      if ( !kind ) {
         std::abort();
      }
      Sim::GroupTable table = Sim::defaultGroupTable( Sim::StageCapacities{
          capacityOf( kind->vfp ), capacityOf( kind->ifp ), capacityOf( kind->efp ) } );
      for ( const Halyard::TcamGroupAssignment a : layout.missingGroups ) {
         table.erase( a );
      }
      options.groupTable = table;
   }
   return options;
}

std::string escaped( std::string_view text ) {
   static constexpr std::string_view special = "\\^$.|?*+()[]{}";
   std::string out;
   for ( const char c : text ) {
      if ( special.find( c ) != std::string_view::npos ) {
         out += '\\';
      }
      out += c;
   }
   return out;
}

}  // namespace

std::string assertionFailure( std::string_view expr ) {
   return "Assertion `" + escaped( expr ) + "' failed";
}

std::string sdkCheckFailure( std::string_view call ) {
   return escaped( call ) + " API ERROR:";
}

std::vector<std::string> catalogKindNames() {
   std::vector<std::string> names;
   for ( const Sim::ChipKind& kind : Sim::chipCatalog() ) {
      names.push_back( kind.name );
   }
   return names;
}

CleanProcessState::CleanProcessState() {
   unsetenv( "SIMULATION_VMID" );
   Halyard::toggleStateDel( Halyard::mirrorOnDropToggle );
   Halyard::ToggleTestAccess::onceCacheClear();
}

CleanProcessState::~CleanProcessState() {
   unsetenv( "SIMULATION_VMID" );
   Halyard::toggleStateDel( Halyard::mirrorOnDropToggle );
   Halyard::ToggleTestAccess::onceCacheClear();
}

BringupSwitch::BringupSwitch( const SwitchLayout& layout )
    : kinds_( layout.kinds ),
      switch_( profileOf( layout ), optionsOf( layout ) ),
      mainConfig_( Acl::configFactory() ),
      paramConfig_( Acl::paramConfigFactory() ),
      helper_( makeHelper() ) {}

Halyard::AclHelper::Ptr BringupSwitch::makeHelper() const {
   return Halyard::aclHelperFactory(
       switch_.vlanTopoSliceStatus(), switch_.vlanTopoBlockedStatus(), switch_.hcsd(),
       switch_.groupManager(), mainConfig_, paramConfig_, switch_.statusDp(), switch_.aclHwStatus(),
       switch_.l3SliceAgentStatus(), switch_.l3IntfStatus(), switch_.hasFabric() );
}

// The helper goes before the switch whose records it holds.
BringupSwitch::~BringupSwitch() {
   helper_ = nullptr;
}

const Sim::ChipKind& BringupSwitch::kind( U32 unit ) const {
   return switch_.chipKind( unit );
}

Sim::SimBoundedTcamEntryManager& BringupSwitch::boundedManager(
    Halyard::TcamGroupAssignment a ) const {
   auto manager =
       Vesper::ptrDynamicCast<Sim::SimBoundedTcamEntryManager>( groupManager()->entryManager( a ) );
   if ( !manager ) {
      std::abort();
   }
   return *manager;
}

U32 BringupSwitch::mgmtEntry( Halyard::AclManagementTcams offset ) const {
   return boundedManager( Halyard::tcamGroupAclMgmt ).entryBase() + offset;
}

U32 BringupSwitch::portBlockingEntry( Halyard::AclPortBlockingTcams offset ) const {
   return boundedManager( Halyard::tcamGroupAclPortBlocking ).entryBase() + offset;
}

std::vector<U32> BringupSwitch::managementEntriesInOrder() const {
   using namespace Halyard;
   return { portBlockingEntry( aclMgmtTcamPortBlock1 ),
            portBlockingEntry( aclMgmtTcamPortBlock2 ),
            mgmtEntry( aclMgmtTcamStpBlock ),
            mgmtEntry( aclMgmtTcamStpLearn ),
            mgmtEntry( aclMgmtTcamVfpDropLog ),
            mgmtEntry( aclMgmtTcamVfpDrop ),
            mgmtEntry( aclMgmtTcamVfpLog ),
            mgmtEntry( aclMgmtTcamVlanBlock ),
            portBlockingEntry( aclMgmtTcamEgressBlock1 ),
            portBlockingEntry( aclMgmtTcamEgressBlock2 ) };
}

std::vector<U32> BringupSwitch::chipEntries( U32 unit ) {
   std::vector<U32> all;
   for ( const Sim::GroupId group : chip( unit ).groups() ) {
      for ( const Sim::EntryId entry : chip( unit ).entries( group ) ) {
         all.push_back( entry );
      }
   }
   return all;
}

}  // namespace AclBringupTest

#include "tests/acl/core/CoreSwitch.h"

#include <cstdlib>

#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/ModId.h"
#include "platform/tcam/HalyardModInfo.h"
#include "sim/sdk/SdkValues.h"
#include "sim/tcam/GroupTable.h"
#include "tests/acl/SecurityMachineTable.h"

namespace AclCoreTest {

namespace {

using namespace Halyard;

// Ports given an interface on every unit.
constexpr U32 portsWithIntf[] = { 1, 2, 3, 4, 5, 6 };

const Sim::ChipKind& kindNamed( const std::string& name ) {
   const Sim::ChipKind* kind = Sim::chipKindByName( name );
   if ( !kind ) {
      std::abort();
   }
   return *kind;
}

Sim::StageCapacity capacityOf( const Sim::StageSlices& slices ) {
   const U32 count = slices.slices();
   return Sim::StageCapacity{ count, count ? slices.totalNarrow() / count : 0 };
}

Sim::GroupTable groupTableOf( const Sim::ChipKind& kind ) {
   return Sim::defaultGroupTable( Sim::StageCapacities{
       capacityOf( kind.vfp ), capacityOf( kind.ifp ), capacityOf( kind.efp ) } );
}

}  // namespace

CoreSwitch::CoreSwitch( const std::vector<std::string>& kinds )
    : hcsd( halyardCommonSmDataFactory() ),
      sliceStatus( HalyardVlanTopo::vlanTopoSliceStatusFactory() ),
      blockedStatus( HalyardVlanTopo::vlanTopoBlockedStatusFactory() ),
      mainConfig( Acl::configFactory() ),
      paramConfig( Acl::paramConfigFactory() ),
      status( Acl::statusDpFactory() ),
      hwStatus( HalyardCentral::aclHwStatusFactory() ),
      l3SliceStatus( HalyardL3::l3SliceAgentStatusFactory() ),
      l3IntfStatus( HalyardL3::l3IntfStatusFactory() ),
      sdkInstall_( sdk_ ),
      groupMgr_( Sim::SimTcamGroupManager::create(
          groupTableOf( kindNamed( kinds.empty() ? "trident2" : kinds.front() ) ) ) ) {
   for ( const std::string& name : kinds ) {
      const U32 unit = units();
      const Sim::ChipKind& kind = kindNamed( name );
      kinds_.push_back( &kind );
      chips_.push_back( std::make_unique<Sim::ChipModel>( kind.chipConfig( S32( unit ) ) ) );
      sdk_.unitIs( int( unit ), *chips_.back(), kind );
      groupMgr_->unitIs( unit, *chips_.back() );
      groupMgr_->modChipInfoIs( U16( unit ), kind.chipInfo );
      hcsd->halyardModIdIs( U16( unit ),
                            HalyardModInfo( U16( unit + chipOffset ), Pylon::ModId( unit ),
                                            kind.chipInfo, Vesper::Name( name ) ) );
      for ( const U32 port : portsWithIntf ) {
         hcsd->halyardIntfToPortIs( intfOf( unit, port ), HalyardTypes::HalyardPort( unit, port ) );
      }
   }
}

CoreSwitch::~CoreSwitch() = default;

AclHelper::Ptr CoreSwitch::makeHelper( bool hasFabric ) const {
   return aclHelperFactory( sliceStatus, blockedStatus, hcsd, groupMgr_, mainConfig, paramConfig,
                            status, hwStatus, l3SliceStatus, l3IntfStatus, hasFabric );
}

HalyardUnboundedTcamEntryManager::Ptr CoreSwitch::manager( TcamGroupAssignment a ) const {
   return groupMgr_->unboundedEntryManager( a );
}

void CoreSwitch::makeSecurityStateMachines( const AclHelper::Ptr& helper ) const {
   for ( const auto& row : HalyardAclTest::securityMachineRows ) {
      HalyardUnboundedTcamEntryManager::Ptr m[7];
      for ( int i = 0; i < 7; ++i ) {
         m[i] = row.managers[i] == HalyardAclTest::noManager ? nullptr : manager( row.managers[i] );
      }
      helper->halyardAclTypeDirectionFeatureSmIs(
          HalyardAclTypeDirectionFeature( row.type, row.direction, aclFeatureSecurity ),
          helper.ptr(), m[0], m[1], m[2], m[3], m[4], m[5], m[6] );
   }
}

Pylon::IntfId CoreSwitch::intfOf( U32 unit, U32 port ) {
   return Pylon::IntfId::ethernet( unit * 100 + port );
}

U32 CoreSwitch::ingressClass( U32 unit, U32 port ) const {
   return chip( unit ).ports().portClass( port, Sim::PortClassKind::FieldIngress ).value();
}

U32 CoreSwitch::egressClass( U32 unit, U32 port ) const {
   return chip( unit ).ports().portClass( port, Sim::PortClassKind::FieldEgress ).value();
}

std::optional<U32> CoreSwitch::portTableBit( U32 unit, U32 port, bool lport ) const {
   const soc_mem_t table = lport ? Sim::SdkValues::kLPortTable : Sim::SdkValues::kPortTable;
   return chip( unit ).ports().portTableField(
       port, static_cast<U32>( table ),
       static_cast<U32>( Sim::SdkValues::kUsePortTableGroupIdField ) );
}

}  // namespace AclCoreTest

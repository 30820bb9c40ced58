#include "sim/switch/SimSwitch.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/vesper/Exception.h"

namespace Sim {

namespace {

const SwitchProfile& complete( const SwitchProfile& profile ) {
   profile.checkComplete();
   return profile;
}

// One stage's size on a unit of `kind`: the slices and their mean narrow count, which is what
// the group table shares out among the stage's groups.
StageCapacity capacityOf( const StageSlices& slices ) {
   const U32 count = slices.slices();
   return StageCapacity{ count, count ? slices.totalNarrow() / count : 0 };
}

StageCapacity larger( const StageCapacity& a, const StageCapacity& b ) {
   return a.entries() >= b.entries() ? a : b;
}

// The unit's chip: its kind's, with the profile's port count and whatever the profile takes
// away (the last slices of a stage, range checkers, UDF chunks).
ChipConfig chipConfigOf( const UnitDef& def, const ChipKind& kind ) {
   ChipConfig config = kind.chipConfig( def.module );
   config.portCount = def.portCount;
   for ( std::size_t s = 0; s < kStageCount; ++s ) {
      if ( def.slices[s] ) {
         config.slices[s].narrowEntries.resize( *def.slices[s] );
      }
   }
   config.rangeCheckers = def.rangeCheckers.value_or( config.rangeCheckers );
   config.udfChunks = def.udfChunks.value_or( config.udfChunks );
   return config;
}

Vesper::Ptr<HalyardCentral::HalyardAttributes> attributesFor(
    const SwitchProfile& profile, const std::map<U32, ChipKind>& unitKinds ) {
   auto attrs = HalyardCentral::halyardAttributesFactory();
   chipTableFill( *attrs );
   for ( const auto& [unit, kind] : unitKinds ) {
      attrs->chipIs( kind.chipInfo, chipAttributesOf( kind ) );
   }
   attrs->egressFilterPerPortIs( profile.flags().egressFilterPerPort );
   return attrs;
}

Fennel::FennelEpochStatus::Ptr epochStatusFor( const SwitchProfile& profile ) {
   auto status = Fennel::fennelEpochStatusFactory();
   status->aclSupportedIs( Vesper::Name( profile.linecardName() ), true );
   status->aclSupportedIs( Vesper::Name( profile.epochName() ), true );
   return status;
}

}  // namespace

std::map<U32, SimSwitch::Unit> SimSwitch::buildUnits( const SwitchProfile& profile,
                                                      const std::map<U32, ChipKind>& unitKinds ) {
   std::map<U32, Unit> units;
   for ( const auto& [number, def] : profile.units() ) {
      Unit& u = units[number];
      u.def = def;
      const auto custom = unitKinds.find( number );
      u.kind = custom != unitKinds.end() ? &custom->second : chipKindByName( def.kind );
      if ( u.kind->portCount < def.portCount ) {
         throw ProfileError( "unit " + std::to_string( number ) + ": chip kind " + u.kind->name +
                             " has fewer ports than the profile gives the unit" );
      }
      u.layout = unitPortLayout( def );
      u.chip = std::make_unique<ChipModel>( chipConfigOf( def, *u.kind ) );
   }
   return units;
}

SimSwitch::SimSwitch( const SwitchProfile& profile, const SwitchOptions& options )
    : profile_( complete( profile ) ),
      unitKinds_( options.unitKinds ),
      units_( buildUnits( profile_, unitKinds_ ) ),
      sdkInstall_( sdk_ ),
      groupManager_( SimTcamGroupManager::create( groupTableFor( options ) ) ),
      hcsd_( Halyard::halyardCommonSmDataFactory() ),
      attributes_( attributesFor( profile_, unitKinds_ ) ),
      epochStatus_( epochStatusFor( profile_ ) ),
      processWide_( attributes_, epochStatus_, fabric_ ),
      vlanTopoSliceStatus_( HalyardVlanTopo::vlanTopoSliceStatusFactory() ),
      vlanTopoBlockedStatus_( HalyardVlanTopo::vlanTopoBlockedStatusFactory() ),
      l3SliceAgentStatus_( HalyardL3::l3SliceAgentStatusFactory() ),
      l3IntfStatus_( HalyardL3::l3IntfStatusFactory() ),
      aclHwStatus_( HalyardCentral::aclHwStatusFactory() ),
      statusDp_( Acl::statusDpFactory() ),
      lagInputConfig_( Lag::Input::configFactory() ),
      vlanTopoAgent_( agentChips(), vlanTopoSliceStatus_, vlanTopoBlockedStatus_ ),
      l3Agent_( agentChips(), l3SliceAgentStatus_, l3IntfStatus_ ) {
   unitsAttach( options );
   commonDataFill();
   statusFill( options );
   egressL3ClassesFill();
}

SimSwitch::~SimSwitch() = default;

// Each unit's slices decide what its groups get; the table's caps are those of the largest
// kind, so that they limit no unit, unless a test lowers one.
GroupTable SimSwitch::groupTableFor( const SwitchOptions& options ) const {
   GroupTable table;
   if ( options.groupTable ) {
      table = *options.groupTable;
   } else {
      std::optional<StageCapacities> most;
      for ( const auto& [number, u] : units_ ) {
         const StageCapacities c{ capacityOf( u.kind->vfp ), capacityOf( u.kind->ifp ),
                                  capacityOf( u.kind->efp ) };
         most = most ? StageCapacities{ larger( most->vfp, c.vfp ), larger( most->ifp, c.ifp ),
                                        larger( most->efp, c.efp ) }
                     : c;
      }
      table = defaultGroupTable( *most );
   }
   for ( const auto& [a, capacity] : options.groupCapacities ) {
      auto it = table.find( a );
      if ( it == table.end() ) {
         throw Vesper::RangeException( "group " + std::to_string( U32( a ) ) +
                                       " is not in the switch's group table" );
      }
      it->second.capacity = std::min( it->second.capacity, capacity );
   }
   return table;
}

UnitUsage SimSwitch::tcamUsage( U32 unit ) const {
   unitAt( unit );
   return *groupManager_->unitUsage( unit );
}

void SimSwitch::unitsAttach( const SwitchOptions& options ) {
   for ( auto& [number, u] : units_ ) {
      sdk_.unitIs( static_cast<int>( number ), *u.chip, *u.kind );
      groupManager_->unitIs( number, *u.chip,
                             options.unitLimits.value_or( UnitLimits::of( *u.chip ) ) );
      groupManager_->modChipInfoIs( static_cast<U16>( number ), u.kind->chipInfo );
   }
}

std::vector<AgentChip> SimSwitch::agentChips() const {
   std::vector<AgentChip> chips;
   for ( const auto& [number, u] : units_ ) {
      chips.push_back(
          AgentChip{ Pylon::ModId( u.def.module ), static_cast<U16>( number ), u.chip.get() } );
   }
   return chips;
}

const SimSwitch::Unit& SimSwitch::unitAt( U32 unit ) const {
   auto it = units_.find( unit );
   if ( it == units_.end() ) {
      throw Vesper::RangeException( "unit " + std::to_string( unit ) +
                                    " is not a unit of this switch" );
   }
   return it->second;
}

std::vector<U32> SimSwitch::units() const {
   std::vector<U32> numbers;
   for ( const auto& [number, u] : units_ ) {
      numbers.push_back( number );
   }
   return numbers;
}

ChipModel& SimSwitch::chip( U32 unit ) const {
   return *unitAt( unit ).chip;
}

const ChipKind& SimSwitch::chipKind( U32 unit ) const {
   return *unitAt( unit ).kind;
}

Pylon::ModId SimSwitch::modId( U32 unit ) const {
   return Pylon::ModId( unitAt( unit ).def.module );
}

const UnitPortLayout& SimSwitch::portLayout( U32 unit ) const {
   return unitAt( unit ).layout;
}

void SimSwitch::aclSupportedIs( bool supported ) {
   epochStatus_->aclSupportedIs( Vesper::Name( profile_.linecardName() ), supported );
   epochStatus_->aclSupportedIs( Vesper::Name( profile_.epochName() ), supported );
}

U32 SimSwitch::stepAgents() {
   const U32 vlanTopo = vlanTopoAgent_.step();
   return vlanTopo + l3Agent_.step();
}

std::optional<SimSwitch::HalyardPort> SimSwitch::portOf( Pylon::IntfId intf ) const {
   if ( intf.isSubIntf() ) {
      if ( !profile_.subIntfs().count( intf ) ) {
         return std::nullopt;
      }
      intf = intf.parent();
   }
   if ( intf.isPortChannel() ) {
      auto it = profile_.portChannels().find( intf.number() );
      if ( it == profile_.portChannels().end() ) {
         return std::nullopt;
      }
      intf = it->second.front();
   }
   if ( !intf.isEthernet() || intf.lane() != 0 ) {
      return std::nullopt;
   }
   auto it = profile_.ethernet().find( intf.number() );
   return it == profile_.ethernet().end() ? std::nullopt : std::optional( it->second );
}

Pylon::IntfId SimSwitch::intfOf( HalyardPort port ) const {
   for ( const auto& [number, at] : profile_.ethernet() ) {
      if ( at == port ) {
         return Pylon::IntfId::ethernet( number );
      }
   }
   return Pylon::IntfId();
}

}  // namespace Sim

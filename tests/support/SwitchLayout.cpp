#include "tests/support/SwitchLayout.h"

#include <cstdio>
#include <cstdlib>

#include "platform/tcam/ChipInfo.h"

namespace HalyardTest {

namespace {

Sim::StageCapacity capacityOf( const Sim::StageSlices& slices ) {
   const U32 count = slices.slices();
   return Sim::StageCapacity{ count, count ? slices.totalNarrow() / count : 0 };
}

}  // namespace

Sim::SwitchProfile profileOf( const SwitchLayout& layout ) {
   Sim::SwitchProfile profile;
   profile.nameIs( "test" );
   Sim::SwitchFlags flags;
   flags.fabric = layout.fabric;
   flags.egressFilterPerPort = layout.egressFilterPerPort;
   flags.vlanBlocking = layout.vlanBlocking;
   profile.flagsIs( flags );
   for ( U32 unit = 0; unit < layout.kinds.size(); ++unit ) {
      Sim::UnitDef def;
      def.unit = unit;
      def.kind = layout.kinds[unit];
      def.module = static_cast<U16>( unit + layout.firstModule );
      profile.unitIs( def );
      for ( U32 port = 1; port <= layout.frontPanelPorts; ++port ) {
         profile.ethernetIs( unit * 100 + port, unit, port );
      }
   }
   return profile;
}

Pylon::IntfId intfOf( U32 unit, U32 port ) {
   return Pylon::IntfId::ethernet( unit * 100 + port );
}

std::vector<std::string> catalogKindNames() {
   std::vector<std::string> names;
   for ( const Sim::ChipKind& kind : Sim::chipCatalog() ) {
      names.push_back( kind.name );
   }
   return names;
}

const Sim::ChipKind& catalogKind( std::string_view name ) {
   const Sim::ChipKind* kind = Sim::chipKindByName( name );
   if ( !kind ) {
      std::fprintf( stderr, "no chip kind named %.*s in the catalog\n", int( name.size() ),
                    name.data() );
      std::abort();
   }
   return *kind;
}

Sim::ChipKind customKind( std::string_view base, std::string name, U16 tag ) {
   Sim::ChipKind kind = catalogKind( base );
   kind.description = name + " (a test's own kind, from " + std::string( base ) + ")";
   kind.name = std::move( name );
   kind.chipInfo = HalyardCentral::ChipInfo( kind.chipInfo.familyCode(), 0xd000u + tag,
                                             kind.chipInfo.revisionId() );
   return kind;
}

Sim::GroupTable groupTableOf( const Sim::ChipKind& kind ) {
   return Sim::defaultGroupTable( Sim::StageCapacities{
       capacityOf( kind.vfp ), capacityOf( kind.ifp ), capacityOf( kind.efp ) } );
}

Sim::GroupTable groupTableWith( const Sim::ChipKind& kind,
                                const std::vector<Halyard::TcamGroupAssignment>& assignments,
                                U32 capacity ) {
   Sim::GroupTable table = groupTableOf( kind );
   for ( const Halyard::TcamGroupAssignment a : assignments ) {
      table.at( a ).capacity = capacity;
   }
   return table;
}

Sim::GroupTable groupTableWithout( const Sim::ChipKind& kind,
                                   const std::vector<Halyard::TcamGroupAssignment>& assignments ) {
   Sim::GroupTable table = groupTableOf( kind );
   for ( const Halyard::TcamGroupAssignment a : assignments ) {
      table.erase( a );
   }
   return table;
}

}  // namespace HalyardTest

#include "tests/support/ChipReadback.h"

#include "sim/sdk/SdkValues.h"
#include "sim/tcam/TcamUnit.h"

namespace HalyardTest {

std::vector<U32> groupEntries( const Sim::ChipModel& chip, Halyard::TcamGroupAssignment a ) {
   std::vector<U32> out;
   for ( const Sim::EntryId entry : chip.entries( Sim::chipGroupOf( a ) ) ) {
      out.push_back( entry );
   }
   return out;
}

std::vector<U32> installedEntries( const Sim::ChipModel& chip, Halyard::TcamGroupAssignment a ) {
   std::vector<U32> out;
   for ( const U32 entry : groupEntries( chip, a ) ) {
      if ( chip.entryInstalled( entry ).value_or( false ) ) {
         out.push_back( entry );
      }
   }
   return out;
}

std::vector<U32> chipEntries( const Sim::ChipModel& chip ) {
   std::vector<U32> all;
   for ( const Sim::GroupId group : chip.groups() ) {
      for ( const Sim::EntryId entry : chip.entries( group ) ) {
         all.push_back( entry );
      }
   }
   return all;
}

std::optional<Halyard::TcamGroupAssignment> groupOf( const Sim::ChipModel& chip, U32 entry ) {
   const std::optional<Sim::GroupId> group = chip.entryGroup( entry );
   if ( !group ) {
      return std::nullopt;
   }
   return static_cast<Halyard::TcamGroupAssignment>( *group );
}

std::optional<NumericQual> numericQual( const Sim::ChipModel& chip, U32 entry, Sim::QualId q ) {
   const std::optional<Sim::QualValue> value = chip.qualifier( entry, q );
   if ( !value ) {
      return std::nullopt;
   }
   return NumericQual{ value->dataU64(), value->maskU64() };
}

U32 ingressClass( const Sim::ChipModel& chip, U32 port ) {
   return chip.ports().portClass( port, Sim::PortClassKind::FieldIngress ).value_or( 0 );
}

U32 egressClass( const Sim::ChipModel& chip, U32 port ) {
   return chip.ports().portClass( port, Sim::PortClassKind::FieldEgress ).value_or( 0 );
}

std::optional<U32> portTableBit( const Sim::ChipModel& chip, U32 port, bool lport ) {
   const soc_mem_t table = lport ? Sim::SdkValues::kLPortTable : Sim::SdkValues::kPortTable;
   return chip.ports().portTableField(
       port, static_cast<U32>( table ),
       static_cast<U32>( Sim::SdkValues::kUsePortTableGroupIdField ) );
}

std::string entryText( const Sim::ChipModel& chip, U32 entry ) {
   return chip.entryDump( entry ).value_or( "no entry " + std::to_string( entry ) );
}

}  // namespace HalyardTest

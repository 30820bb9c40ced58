// Port classes, port controls, egress masks by module, and the rows of the port tables with
// the locks that guard them.
#include <string>

#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

namespace {

bool validPort( const ChipModel& chip, bcm_port_t port ) {
   return port >= 0 && chip.ports().valid( static_cast<U32>( port ) );
}

// Where a field stands in a table row of this SDK build. The library only reads a row, sets
// one field through the SDK and writes the row back, so the layout is the SDK's own business;
// the two tables keep the same field at different places.
struct FieldSlot {
   soc_mem_t mem;
   soc_field_t field;
   std::size_t word;
   U32 shift;
   U32 width;

   U32 maxValue() const { return width >= 32 ? ~0u : ( 1u << width ) - 1; }
   template <typename Row>
   U32 get( const Row& row ) const {
      return ( row.entry_data[word] >> shift ) & maxValue();
   }
   template <typename Row>
   void put( Row& row, U32 value ) const {
      row.entry_data[word] &= ~( maxValue() << shift );
      row.entry_data[word] |= ( value & maxValue() ) << shift;
   }
};

constexpr FieldSlot kFieldSlots[] = {
    { kPortTable, kUsePortTableGroupIdField, 1, 12, 1 },
    { kLPortTable, kUsePortTableGroupIdField, 0, 20, 1 },
};

const FieldSlot* slotOf( soc_mem_t mem, soc_field_t field ) {
   for ( const FieldSlot& s : kFieldSlots ) {
      if ( s.mem == mem && s.field == field ) {
         return &s;
      }
   }
   return nullptr;
}

// The table that a row type belongs to.
template <typename Row>
constexpr soc_mem_t tableOf();
template <>
constexpr soc_mem_t tableOf<port_tab_entry_s>() {
   return kPortTable;
}
template <>
constexpr soc_mem_t tableOf<lport_tab_entry_s>() {
   return kLPortTable;
}

std::string tableName( soc_mem_t mem ) {
   return mem == kPortTable    ? "PORT_TAB"
          : mem == kLPortTable ? "LPORT_TAB"
                               : "table " + std::to_string( static_cast<int>( mem ) );
}

}  // namespace

// ---- Port classes, controls and egress masks.

int SimSdk::bcm_port_class_get( int unit, bcm_port_t port, bcm_port_class_t pclass, U32* classId ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_port_class_get, unit, chip ) ) {
      return rc;
   }
   const auto kind = portClassOf( pclass );
   if ( !kind || !classId ) {
      return kParam;
   }
   if ( !validPort( *chip, port ) ) {
      return kPort;
   }
   *classId = *chip->ports().portClass( static_cast<U32>( port ), *kind );
   return kNone;
}

int SimSdk::bcm_port_class_set( int unit, bcm_port_t port, bcm_port_class_t pclass, U32 classId ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_port_class_set, unit, chip ) ) {
      return rc;
   }
   const auto kind = portClassOf( pclass );
   if ( !kind ) {
      return kParam;
   }
   if ( !validPort( *chip, port ) ) {
      return kPort;
   }
   return codeOf( chip->ports().portClassIs( static_cast<U32>( port ), *kind, classId ) );
}

int SimSdk::bcm_port_control_set( int unit, bcm_port_t port, bcm_port_control_t type, int value ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_port_control_set, unit, chip ) ) {
      return rc;
   }
   if ( type != kPortControlFilterEgress ) {
      return kUnavail;
   }
   if ( !validPort( *chip, port ) ) {
      return kPort;
   }
   return codeOf(
       chip->ports().portControlIs( static_cast<U32>( port ), static_cast<U32>( type ), value ) );
}

int SimSdk::bcm_port_modid_egress_get( int unit, bcm_port_t port, bcm_module_t modid,
                                       bcm_pbmp_t* pbmp ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_port_modid_egress_get, unit, chip ) ) {
      return rc;
   }
   if ( !pbmp ) {
      return kParam;
   }
   if ( !validPort( *chip, port ) ) {
      return kPort;
   }
   *pbmp = pbmpOf( *chip->ports().egressMask( static_cast<U32>( port ), modid ) );
   return kNone;
}

int SimSdk::bcm_port_modid_egress_set( int unit, bcm_port_t port, bcm_module_t modid,
                                       bcm_pbmp_t pbmp ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_port_modid_egress_set, unit, chip ) ) {
      return rc;
   }
   if ( !validPort( *chip, port ) ) {
      return kPort;
   }
   return codeOf(
       chip->ports().egressMaskIs( static_cast<U32>( port ), modid, portBitmapOf( pbmp ) ) );
}

// ---- Port-table rows. The index of a row is the port.

void SimSdk::requireTableLock( const Unit& u, int unit, soc_mem_t mem, const char* what ) {
   const bool held = mem == kPortTable ? u.portLockDepth > 0 || u.portTableLockDepth > 0
                                       : u.lportTableLockDepth > 0;
   if ( !held ) {
      gate_.violationIs( std::string( what ) + " of " + tableName( mem ) + " on unit " +
                         std::to_string( unit ) + " without its lock" );
   }
}

template <typename Row>
int SimSdk::tableRead( int unit, soc_mem_t mem, int block, int index, Row* row ) {
   Unit* u = nullptr;
   if ( const int rc = begin( SdkOp::soc_mem_read, unit, u ) ) {
      return rc;
   }
   if ( mem != tableOf<Row>() || ( block != kMemBlockAny && block != kMemBlockAll ) || !row ||
        !validPort( *u->chip, index ) ) {
      return kParam;
   }
   requireTableLock( *u, unit, mem, "soc_mem_read" );
   *row = Row{};
   for ( const FieldSlot& s : kFieldSlots ) {
      if ( s.mem == mem ) {
         const auto v = u->chip->ports().portTableField(
             static_cast<U32>( index ), static_cast<U32>( mem ), static_cast<U32>( s.field ) );
         s.put( *row, v.value_or( 0 ) );
      }
   }
   return kNone;
}

template <typename Row>
int SimSdk::tableWrite( int unit, soc_mem_t mem, int block, int index, Row* row ) {
   Unit* u = nullptr;
   if ( const int rc = begin( SdkOp::soc_mem_write, unit, u ) ) {
      return rc;
   }
   if ( mem != tableOf<Row>() || ( block != kMemBlockAny && block != kMemBlockAll ) || !row ||
        !validPort( *u->chip, index ) ) {
      return kParam;
   }
   requireTableLock( *u, unit, mem, "soc_mem_write" );
   for ( const FieldSlot& s : kFieldSlots ) {
      if ( s.mem == mem ) {
         const Status st =
             u->chip->ports().portTableFieldIs( static_cast<U32>( index ), static_cast<U32>( mem ),
                                                static_cast<U32>( s.field ), s.get( *row ) );
         if ( st != Status::Ok ) {
            return codeOf( st );
         }
      }
   }
   return kNone;
}

template <typename Row>
void SimSdk::tableFieldSet( int unit, soc_mem_t mem, Row* row, soc_field_t field, U32 value ) {
   // No code to answer: a field that the table lacks is a violation, and the row stays.
   gate_.enter( SdkOp::soc_mem_field32_set );
   const FieldSlot* slot = slotOf( mem, field );
   if ( !row || mem != tableOf<Row>() || !slot ) {
      gate_.violationIs( "soc_mem_field32_set on unit " + std::to_string( unit ) + ": field " +
                         std::to_string( static_cast<int>( field ) ) + " is no field of " +
                         tableName( tableOf<Row>() ) );
      return;
   }
   if ( value > slot->maxValue() ) {
      gate_.violationIs( "soc_mem_field32_set on unit " + std::to_string( unit ) + ": value " +
                         std::to_string( value ) + " is too wide for its field" );
   }
   slot->put( *row, value );
}

int SimSdk::soc_mem_read( int unit, soc_mem_t mem, int block, int index, port_tab_entry_s* row ) {
   return tableRead( unit, mem, block, index, row );
}

int SimSdk::soc_mem_read( int unit, soc_mem_t mem, int block, int index, lport_tab_entry_s* row ) {
   return tableRead( unit, mem, block, index, row );
}

void SimSdk::soc_mem_field32_set( int unit, soc_mem_t mem, port_tab_entry_s* row, soc_field_t field,
                                  U32 value ) {
   tableFieldSet( unit, mem, row, field, value );
}

void SimSdk::soc_mem_field32_set( int unit, soc_mem_t mem, lport_tab_entry_s* row,
                                  soc_field_t field, U32 value ) {
   tableFieldSet( unit, mem, row, field, value );
}

int SimSdk::soc_mem_write( int unit, soc_mem_t mem, int block, int index, port_tab_entry_s* row ) {
   return tableWrite( unit, mem, block, index, row );
}

int SimSdk::soc_mem_write( int unit, soc_mem_t mem, int block, int index, lport_tab_entry_s* row ) {
   return tableWrite( unit, mem, block, index, row );
}

// ---- Locks.

int SimSdk::soc_mem_lock( int unit, soc_mem_t mem ) {
   Unit* u = nullptr;
   if ( const int rc = begin( SdkOp::soc_mem_lock, unit, u ) ) {
      return rc;
   }
   if ( mem != kPortTable && mem != kLPortTable ) {
      return kParam;
   }
   ++( mem == kPortTable ? u->portTableLockDepth : u->lportTableLockDepth );
   return kNone;
}

int SimSdk::soc_mem_unlock( int unit, soc_mem_t mem ) {
   Unit* u = nullptr;
   if ( const int rc = begin( SdkOp::soc_mem_unlock, unit, u ) ) {
      return rc;
   }
   if ( mem != kPortTable && mem != kLPortTable ) {
      return kParam;
   }
   U32& depth = mem == kPortTable ? u->portTableLockDepth : u->lportTableLockDepth;
   if ( depth == 0 ) {
      gate_.violationIs( "soc_mem_unlock of " + tableName( mem ) + " on unit " +
                         std::to_string( unit ) + " without soc_mem_lock" );
      return kParam;
   }
   --depth;
   return kNone;
}

void SimSdk::PORT_LOCK( int unit ) {
   gate_.enter( SdkOp::PORT_LOCK );
   if ( Unit* u = unitOf( unit ) ) {
      ++u->portLockDepth;
   } else {
      gate_.violationIs( "PORT_LOCK of unit " + std::to_string( unit ) + ", which has no chip" );
   }
}

void SimSdk::PORT_UNLOCK( int unit ) {
   gate_.enter( SdkOp::PORT_UNLOCK );
   Unit* u = unitOf( unit );
   if ( !u || u->portLockDepth == 0 ) {
      gate_.violationIs( "PORT_UNLOCK of unit " + std::to_string( unit ) + " without PORT_LOCK" );
      return;
   }
   --u->portLockDepth;
}

}  // namespace Sim

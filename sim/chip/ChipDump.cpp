// The text dump of one entry, as the SDK's entry dump prints it to its console.
#include <iomanip>
#include <sstream>
#include <string>

#include "sim/chip/ChipModel.h"
#include "sim/chip/ChipModelInternal.h"

namespace Sim {

namespace {

// "0x" and `n` bytes in two hexadecimal digits each.
struct Hex {
   const U8* bytes;
   std::size_t n;
};

std::ostream& operator<<( std::ostream& os, Hex h ) {
   os << "0x" << std::hex << std::setfill( '0' );
   for ( std::size_t i = 0; i < h.n; ++i ) {
      os << std::setw( 2 ) << unsigned( h.bytes[i] );
   }
   return os << std::dec;
}

const char* rangeTypeName( RangeType t ) {
   switch ( t ) {
      case RangeType::SrcPort:
         return "SrcPort";
      case RangeType::DstPort:
         return "DstPort";
      case RangeType::IpLength:
         return "IpLength";
   }
   return "?";
}

}  // namespace

std::optional<std::string> ChipModel::entryDump( EntryId id ) const {
   const EntryRecord* e = find( id );
   if ( !e ) {
      return std::nullopt;
   }
   const GroupRecord& g = *groups_.at( e->group );
   std::ostringstream s;
   s << "EID " << e->id << ": gid=" << e->group << " stage=" << stageName( g.stage )
     << " prio=" << e->priority << " ordinal=" << e->ordinal
     << ( e->installed ? " installed" : " not-installed" )
     << ( e->enabled ? " enabled" : " disabled" ) << ( e->pending ? " pending" : "" )
     << " hits=" << e->hits << "\n";
   for ( const auto& [q, v] : e->quals ) {
      s << "  qual " << qualName( q ) << " data " << Hex{ v.data.data(), v.width } << " mask "
        << Hex{ v.mask.data(), v.width } << "\n";
   }
   if ( e->inPorts ) {
      s << "  qual InPorts data " << e->inPorts->data.text() << " mask " << e->inPorts->mask.text()
        << "\n";
   }
   for ( const auto& r : e->ranges ) {
      const RangeChecker* c = ranges_.get( r.id );
      s << "  range " << r.id << ( r.invert ? " inverted " : " " ) << rangeTypeName( c->type )
        << " " << c->min << ".." << c->max << "\n";
   }
   for ( const auto& [chunk, v] : e->udf ) {
      s << "  udf " << chunk << " data " << Hex{ v.data.data(), v.length } << " mask "
        << Hex{ v.mask.data(), v.length } << "\n";
   }
   for ( const auto& [a, v] : e->actions ) {
      s << "  action " << actionName( a );
      if ( isPortAction( a ) ) {
         s << " " << v.ports.text() << "\n";
      } else {
         s << " " << v.params.param1 << " " << v.params.param2 << "\n";
      }
   }
   return s.str();
}

}  // namespace Sim
